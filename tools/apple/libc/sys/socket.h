#pragma once

#include_next <sys/socket.h>

#define SO_NOSIGPIPE 0x1022 // writing to a closed connection raises no signal
