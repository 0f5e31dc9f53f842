// Programs for macOS see all of the C library without asking for it.
#pragma once
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#include_next <features.h>
