#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace vesk::vdir {

// What an index is stored as: plain values one behind the other, for this machine, with a checksum.

/// A fast 64-bit mixing hash, eight bytes a step; finds damage, resists nobody.
std::uint64_t checksum(std::string_view bytes);

template <class T> void appendPacked(std::string& out, const T* values, std::size_t count) {
    static_assert(std::is_trivially_copyable_v<T>);
    out.append(reinterpret_cast<const char*>(values), count * sizeof(T));
}

/// Takes values off the front of packed bytes; false where too few are left, and then nothing is taken.
class PackedSource {
public:
    explicit PackedSource(std::string_view bytes) : rest_(bytes) {}

    template <class T> bool take(T* values, std::uint64_t count) {
        static_assert(std::is_trivially_copyable_v<T>);
        if (count > rest_.size() / sizeof(T)) return false;
        if (count > 0) std::memcpy(static_cast<void*>(values), rest_.data(), count * sizeof(T));
        rest_.remove_prefix(count * sizeof(T));
        return true;
    }
    template <class T> bool takeList(std::vector<T>& list, std::uint64_t count) {
        if (count > rest_.size() / sizeof(T)) return false;
        list.resize(count);
        return take(list.data(), count);
    }
    bool takeText(std::string& text, std::uint64_t length) {
        if (length > rest_.size()) return false;
        text.assign(rest_.substr(0, length));
        rest_.remove_prefix(length);
        return true;
    }
    std::string_view rest() const { return rest_; }

private:
    std::string_view rest_;
};

} // namespace vesk::vdir
