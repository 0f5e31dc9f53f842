#pragma once

#include <Security/CSCommon.h>
#include <Security/SecBase.h>
#include <Security/SecCode.h>
#include <Security/SecItem.h>
#include <Security/SecRandom.h>
#include <Security/SecStaticCode.h>
