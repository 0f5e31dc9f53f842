#pragma once

#include "VeskSupport/Records.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace vesk::test {

/// Reading the literal and writing it again gives the literal: keys, order of keys, absent fields and layout.
template <class Record> Record expectGolden(const std::string& json) {
    const auto record = fromJson<Record>(parseJson(json));
    EXPECT_EQ(writeJson(toJson(record)), json);
    EXPECT_EQ(fromJson<Record>(toJson(record)), record);
    return record;
}

/// Without any of these keys the literal cannot be read.
template <class Record> void expectRequired(const std::string& json, const std::vector<std::string>& keys) {
    for (const std::string& key : keys) {
        auto object = std::get<JsonValue::Object>(parseJson(json).value);
        ASSERT_EQ(object.erase(key), 1u) << key;
        EXPECT_THROW(fromJson<Record>({object}), DecodingError) << key;
    }
}

} // namespace vesk::test
