#include "services/DebugModeManager.h"
