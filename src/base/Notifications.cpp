#include "base/Notifications.h"

// The header alone declares the object; this file gives moc's output a home.
