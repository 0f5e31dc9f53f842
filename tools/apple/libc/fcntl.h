#pragma once

#include_next <fcntl.h>

#define F_SETNOSIGPIPE 73 // writing to a pipe without a reader raises no signal
