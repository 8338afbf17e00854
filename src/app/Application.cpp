#include "menubar/AppWindows.h"
