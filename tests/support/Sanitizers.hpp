#pragma once

#include <gtest/gtest.h>

/// Ends a test here that takes descriptors or writing away from itself: the sanitizer of undefined behaviour looks at
/// objects through a pipe, and takes those that it cannot look at for broken.
#ifdef __SANITIZE_ADDRESS__
#define SKIP_UNDER_SANITIZERS() GTEST_SKIP() << "the sanitizers need what this test takes away"
#else
#define SKIP_UNDER_SANITIZERS() static_cast<void>(0)
#endif
