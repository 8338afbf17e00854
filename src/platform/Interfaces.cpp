// Gives the output of moc for the interfaces of this folder a home.
#include "platform/Appearance.h"
#include "platform/CalendarStore.h"
#include "platform/HotKeyService.h"
#include "platform/LocationService.h"
#include "platform/Pasteboard.h"
#include "platform/PowerEvents.h"
#include "platform/StatusItem.h"
#include "platform/UserDefaults.h"
