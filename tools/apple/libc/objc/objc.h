// The names of Objective-C's own types.
#pragma once

#include <stdbool.h>

typedef bool BOOL;
#ifdef __OBJC__
#define YES __objc_yes
#define NO __objc_no
#ifdef __cplusplus
#define nil nullptr
#define Nil nullptr
#else
#define nil ((void*)0)
#define Nil ((void*)0)
#endif
#endif
