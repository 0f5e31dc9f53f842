#include "VeskPlatform/Linux/PropertyList.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <gtest/gtest.h>
#include <limits>

namespace vesk {
namespace {

using Array = PropertyListValue::Array;
using Data = PropertyListValue::Data;
using Dictionary = PropertyListValue::Dictionary;

std::string everyByte() {
    std::string bytes;
    for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
    return bytes;
}

TEST(LibplistCoderTests, EveryKindOfValueComesBack) {
    LibplistCoder coder;
    const std::pair<const char*, PropertyListValue> cases[] = {
        {"true", {true}},
        {"false", {false}},
        {"number", {std::int64_t{1}}},
        {"negative number", {std::int64_t{-7}}},
        {"largest", {std::numeric_limits<std::int64_t>::max()}},
        {"smallest", {std::numeric_limits<std::int64_t>::min()}},
        {"real", {1.5}},
        {"empty text", {std::string()}},
        {"text", {std::string("a & <ü> \U0001F600")}},
        {"empty data", {Data{}}},
        {"data", {Data{everyByte()}}},
        {"data with a line end at its end", {Data{"secret\n"}}},
        {"empty array", {Array{}}},
        {"array", {Array{{true}, {std::string("b")}, {Data{"c"}}}}},
        {"empty dictionary", {Dictionary{}}},
        {"dictionary",
         {Dictionary{{"ü", {Dictionary{{"b", {std::int64_t{2}}}}}}, {"a", {Data{std::string(1, '\0')}}}}}},
    };
    for (const auto& [name, value] : cases) {
        const std::string bytes = coder.encodeBinary(value);
        EXPECT_TRUE(bytes.starts_with("bplist00")) << name;
        EXPECT_EQ(coder.decode(bytes), value) << name;
    }
}

TEST(LibplistCoderTests, DataIsReadFromXmlToo) {
    LibplistCoder coder;
    EXPECT_EQ(coder.decode(R"(<plist version="1.0"><dict><key>k</key><data>c2VjcmV0Cg==</data></dict></plist>)"),
              (PropertyListValue{Dictionary{{"k", {Data{"secret\n"}}}}}));
}

TEST(LibplistCoderTests, MalformedBytesAreDecodingErrors) {
    LibplistCoder coder;
    std::string whole = coder.encodeBinary({Dictionary{{"values", {Data{"secret"}}}}});
    for (const std::string& bytes :
         {std::string(), std::string("bplist00"), std::string("{}"), whole.substr(0, whole.size() - 1), whole.substr(8),
          std::string("<plist><dict><key>a</key>")}) {
        try {
            coder.decode(bytes);
            FAIL() << bytes;
        } catch (const DecodingError& error) {
            EXPECT_EQ(error.description(), "The data is not a valid property list.");
        }
    }
}

TEST(LibplistCoderTests, WhatALibraryWouldCutIsRefused) {
    LibplistCoder coder;
    const std::string nul = std::string("a\0b", 3);
    const std::pair<PropertyListValue, std::string> cases[] = {
        {{nul}, "A property list cannot hold a text with a null byte."},
        {{Dictionary{{nul, {true}}}}, "A property list cannot hold a text with a null byte."},
        {{std::string("\xff")}, "A property list cannot hold a text that is no UTF-8."},
        {{Array{PropertyListValue{}}}, "A property list cannot hold a value of that kind."},
    };
    for (const auto& [value, description] : cases) {
        try {
            coder.encodeBinary(value);
            FAIL() << description;
        } catch (const ErrorRecord& error) {
            EXPECT_EQ(error.description(), description);
        }
    }
}

} // namespace
} // namespace vesk
