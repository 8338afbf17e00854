#include "platform/Alerts.h"
