#pragma once

#include <chrono>
#include <condition_variable>
#include <gio/gio.h>
#include <memory>
#include <mutex>
#include <thread>

namespace vesk {

struct GlibRelease {
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GHashTable* table) const { g_hash_table_unref(table); }
    void operator()(char** texts) const { g_strfreev(texts); }
    void operator()(char* text) const { g_free(text); }
};
template <class T> using GlibOwned = std::unique_ptr<T, GlibRelease>;

struct GobjectRelease {
    void operator()(void* object) const { g_object_unref(object); }
};
template <class T> using GobjectOwned = std::unique_ptr<T, GobjectRelease>;

/// Where a GLib function puts its error.
class GlibError {
public:
    GlibError() = default;
    GlibError(const GlibError&) = delete;
    GlibError& operator=(const GlibError&) = delete;
    ~GlibError() { g_clear_error(&error_); }

    GError** operator&() { return &error_; } // NOLINT(google-runtime-operator): made to be handed to GLib
    const GError* get() const { return error_; }

private:
    GError* error_ = nullptr;
};

/// Cancels what runs with its cancellable once the time is over.
class TimeLimit {
public:
    explicit TimeLimit(std::chrono::milliseconds time);
    ~TimeLimit();
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;

    GCancellable* cancellable() const { return cancellable_.get(); }

private:
    void watch(std::chrono::steady_clock::time_point end);

    GobjectOwned<GCancellable> cancellable_;
    std::mutex lock_;
    std::condition_variable changed_;
    bool isOver_ = false;
    std::thread watcher_;
};

} // namespace vesk
