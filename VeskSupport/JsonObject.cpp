#include "VeskSupport/JsonObject.hpp"

#include "VeskSupport/Json.hpp"

#include <algorithm>
#include <stdexcept>

namespace vesk {
namespace {

/// Where the key is or belongs.
auto placeOf(auto& members, std::string_view key) {
    return std::lower_bound(members.begin(), members.end(), key,
                            [](const JsonObject::value_type& member, std::string_view k) { return member.first < k; });
}

/// Most objects are small: looking at the lengths of a few keys in turn takes a third of the time of halving them.
constexpr std::size_t smallSize = 32;

auto found(auto& members, std::string_view key) {
    if (members.size() <= smallSize)
        return std::find_if(members.begin(), members.end(), [&](const auto& member) { return member.first == key; });
    const auto place = placeOf(members, key);
    return place != members.end() && place->first == key ? place : members.end();
}

/// The member, or std::out_of_range.
auto& existing(auto& members, std::string_view key) {
    const auto place = found(members, key);
    if (place == members.end()) throw std::out_of_range("no member \"" + std::string(key) + "\"");
    return place->second;
}

bool ascend(const JsonObject::Members& members) {
    const auto notBefore = [](const auto& left, const auto& right) { return left.first >= right.first; };
    return std::adjacent_find(members.begin(), members.end(), notBefore) == members.end();
}

/// Sorted, with the last of each key. Sorts pointers, since members are large to move.
JsonObject::Members ordered(JsonObject::Members members) {
    if (ascend(members)) return members;
    std::vector<JsonObject::value_type*> order;
    order.reserve(members.size());
    for (auto& member : members) order.push_back(&member);
    std::sort(order.begin(), order.end(), [](const auto* left, const auto* right) {
        const int keys = left->first.compare(right->first);
        return keys != 0 ? keys < 0 : left > right;
    });
    JsonObject::Members result;
    result.reserve(order.size());
    for (auto* member : order)
        if (result.empty() || result.back().first != member->first) result.push_back(std::move(*member));
    return result;
}

} // namespace

JsonObject::JsonObject(Members members) : members_(ordered(std::move(members))) {}
JsonObject::JsonObject(std::initializer_list<value_type> members) : JsonObject(Members(members)) {}

JsonObject::iterator JsonObject::begin() { return members_.begin(); }
JsonObject::iterator JsonObject::end() { return members_.end(); }
JsonObject::const_iterator JsonObject::begin() const { return members_.begin(); }
JsonObject::const_iterator JsonObject::end() const { return members_.end(); }
bool JsonObject::empty() const { return members_.empty(); }
std::size_t JsonObject::size() const { return members_.size(); }

JsonObject::iterator JsonObject::find(std::string_view key) { return found(members_, key); }
JsonObject::const_iterator JsonObject::find(std::string_view key) const { return found(members_, key); }
bool JsonObject::contains(std::string_view key) const { return find(key) != end(); }
JsonValue& JsonObject::at(std::string_view key) { return existing(members_, key); }
const JsonValue& JsonObject::at(std::string_view key) const { return existing(members_, key); }

JsonValue& JsonObject::operator[](std::string_view key) { return emplace(key, {}).first->second; }

std::pair<JsonObject::iterator, bool> JsonObject::emplace(std::string_view key, JsonValue value) {
    const auto place = placeOf(members_, key);
    if (place != end() && place->first == key) return {place, false};
    return {members_.emplace(place, std::string(key), std::move(value)), true};
}

std::pair<JsonObject::iterator, bool> JsonObject::insert_or_assign(std::string_view key, JsonValue value) {
    const auto place = found(members_, key);
    if (place == end()) return emplace(key, std::move(value));
    place->second = std::move(value);
    return {place, false};
}

std::size_t JsonObject::erase(std::string_view key) {
    const auto place = found(members_, key);
    if (place == end()) return 0;
    members_.erase(place);
    return 1;
}
JsonObject::iterator JsonObject::erase(const_iterator member) { return members_.erase(member); }

bool JsonObject::operator==(const JsonObject& other) const { return members_ == other.members_; }

} // namespace vesk
