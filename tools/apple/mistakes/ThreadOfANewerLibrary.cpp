// expects: no type named 'jthread' in namespace 'std'
// The C++ library of macOS 14 does not have it.
#include <thread>

using Worker = std::jthread;
