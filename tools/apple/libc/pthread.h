#pragma once

#include_next <pthread.h>

#ifdef __cplusplus
extern "C" {
#endif
int pthread_cond_timedwait_relative_np(pthread_cond_t*, pthread_mutex_t*, const struct timespec*);
#ifdef __cplusplus
}
#endif
