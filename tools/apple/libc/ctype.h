#pragma once

#include "runetype.h"
#include_next <ctype.h>
