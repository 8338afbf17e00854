#include "menubar/Menu.h"
