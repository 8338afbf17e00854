#include "links/LinkItem.h"
