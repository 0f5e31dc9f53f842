#pragma once

#include <asio/awaitable.hpp>

namespace vesk {

/// A suspending operation. Tasks run on the main serial executor, the one `io_context` that `main` runs.
template <class T> using Task = asio::awaitable<T>;

} // namespace vesk
