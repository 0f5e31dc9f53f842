#pragma once

#include_next <errno.h>

#undef errno
#ifdef __cplusplus
extern "C"
#endif
    int*
    __error(void);
#define errno (*__error())
