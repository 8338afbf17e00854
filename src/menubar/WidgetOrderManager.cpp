#include "menubar/WidgetOrderManager.h"
