// The queue of kernel events of Darwin (kqueue(2)), as far as timers and sockets need it.
#pragma once

#include <stdint.h>
#include <time.h>

#define EVFILT_READ (-1)
#define EVFILT_WRITE (-2)
#define EV_ADD 0x0001
#define EV_DELETE 0x0002
#define EV_ENABLE 0x0004
#define EV_ONESHOT 0x0010
#define EV_CLEAR 0x0020
#define EV_FLAG1 0x2000
#define EV_OOBAND EV_FLAG1
#define EV_ERROR 0x4000
#define EV_EOF 0x8000

struct kevent {
    uintptr_t ident;
    int16_t filter;
    uint16_t flags;
    uint32_t fflags;
    intptr_t data;
    void* udata;
};

#define EV_SET(event, a, b, c, d, e, f)                                                                                \
    do {                                                                                                               \
        struct kevent* made = (event);                                                                                 \
        made->ident = (uintptr_t)(a);                                                                                  \
        made->filter = (int16_t)(b);                                                                                   \
        made->flags = (uint16_t)(c);                                                                                   \
        made->fflags = (uint32_t)(d);                                                                                  \
        made->data = (intptr_t)(e);                                                                                    \
        made->udata = (void*)(f);                                                                                      \
    } while (0)

#ifdef __cplusplus
extern "C" {
#endif
int kqueue(void);
int kevent(int, const struct kevent*, int, struct kevent*, int, const struct timespec*);
#ifdef __cplusplus
}
#endif
