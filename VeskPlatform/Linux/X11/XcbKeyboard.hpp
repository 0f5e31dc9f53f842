#pragma once

// The keyboard extension of xcb, one of whose fields has the name of a keyword.
#define explicit explicitComponents
#include <xcb/xkb.h>
#undef explicit
