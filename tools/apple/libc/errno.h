#pragma once

#include_next <errno.h>
#include <features.h>

#ifdef __cplusplus
extern "C" {
#endif
int* __error(void);
#ifdef __cplusplus
}
#endif

// Darwin keeps it behind another name.
#undef errno
#define errno (*__error())
