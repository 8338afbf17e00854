#include "links/LinkStore.h"
