#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vesk {

struct JsonValue;

/// The members of a JSON object, in ascending byte order of their keys, the order in which they are written. They lie
/// in one piece of memory, since documents are read far more often than changed: what adds or removes a member moves
/// those behind it and makes iterators invalid. The names are those of std::map; keys must not be changed through
/// iterators.
class JsonObject {
public:
    using value_type = std::pair<std::string, JsonValue>;
    using Members = std::vector<value_type>;
    using iterator = Members::iterator;
    using const_iterator = Members::const_iterator;

    JsonObject() = default;
    /// In any order. Of a repeated key the last counts.
    explicit JsonObject(Members members);
    JsonObject(std::initializer_list<value_type> members);

    iterator begin();
    iterator end();
    const_iterator begin() const;
    const_iterator end() const;
    bool empty() const;
    std::size_t size() const;

    iterator find(std::string_view key);
    const_iterator find(std::string_view key) const;
    bool contains(std::string_view key) const;
    /// Throws std::out_of_range where there is no such key.
    JsonValue& at(std::string_view key);
    const JsonValue& at(std::string_view key) const;

    /// A null where the key is new.
    JsonValue& operator[](std::string_view key);
    /// Leaves a member that is there as it is.
    std::pair<iterator, bool> emplace(std::string_view key, JsonValue value);
    std::pair<iterator, bool> insert_or_assign(std::string_view key, JsonValue value);
    /// How many members went.
    std::size_t erase(std::string_view key);
    iterator erase(const_iterator member);

    bool operator==(const JsonObject& other) const;

private:
    Members members_;
};

} // namespace vesk
