#include "VeskShellCore/ReleaseStateSecretArchive.hpp"

#include "VeskSupport/Json.hpp"

#include <gtest/gtest.h>
#include <limits>

namespace vesk {
namespace {

using Array = PropertyListValue::Array;
using Data = PropertyListValue::Data;
using Dictionary = PropertyListValue::Dictionary;

const Dictionary fields{{"schemaVersion", {std::int64_t{1}}},
                        {"sourceService", {std::string("Vesk")}},
                        {"accounts", {Array{{std::string("A")}, {std::string("B")}}}},
                        {"values", {Dictionary{{"A", {Data{"secret\n"}}}}}}};
const ReleaseStateSecretArchive archive{1, "Vesk", {"A", "B"}, {{"A", "secret\n"}}};

TEST(ReleaseStateSecretArchiveTests, TheKeysAreTheFields) {
    EXPECT_EQ(toPropertyList(archive), PropertyListValue{fields});
    EXPECT_EQ(readSecretArchive({fields}), archive);
}

TEST(ReleaseStateSecretArchiveTests, KeysThatAreNoFieldsArePassedOver) {
    Dictionary more = fields;
    more["createdAt"] = {};
    EXPECT_EQ(readSecretArchive({more}), archive);
}

TEST(ReleaseStateSecretArchiveTests, AWholeRealNumberIsANumber) {
    Dictionary real = fields;
    real["schemaVersion"] = {1.0};
    EXPECT_EQ(readSecretArchive({real}), archive);
}

TEST(ReleaseStateSecretArchiveTests, EachFieldIsRequired) {
    for (const auto& [key, value] : fields) {
        Dictionary fewer = fields;
        fewer.erase(key);
        try {
            readSecretArchive({fewer});
            FAIL() << key;
        } catch (const DecodingError& error) {
            EXPECT_EQ(error.code(), 4865) << key;
            EXPECT_EQ(error.description(), "The data cannot be read: " + key + " is missing.");
        }
    }
}

TEST(ReleaseStateSecretArchiveTests, OtherTypesAreRefusedByTheirPath) {
    struct Case {
        const char* key;
        PropertyListValue value;
        const char* description;
    };
    const PropertyListValue text{std::string("planted-secret")};
    const Case cases[] = {
        {"schemaVersion", text, "The data cannot be read: schemaVersion is not a whole number."},
        {"schemaVersion", {1.5}, "The data cannot be read: schemaVersion is not a whole number."},
        {"schemaVersion", {1e300}, "The data cannot be read: schemaVersion is not a whole number."},
        {"schemaVersion",
         {std::numeric_limits<double>::quiet_NaN()},
         "The data cannot be read: schemaVersion is not a whole number."},
        {"schemaVersion", {true}, "The data cannot be read: schemaVersion is not a whole number."},
        {"schemaVersion", {}, "The data cannot be read: schemaVersion is not a whole number."},
        {"sourceService", {Data{"Vesk"}}, "The data cannot be read: sourceService is not text."},
        {"accounts", text, "The data cannot be read: accounts is not an array."},
        {"accounts", {Array{text, {true}}}, "The data cannot be read: accounts[1] is not text."},
        {"values", {Array{}}, "The data cannot be read: values is not a dictionary."},
        {"values", {Dictionary{{"A", text}}}, "The data cannot be read: values.A is not data."},
    };
    for (const Case& c : cases) {
        Dictionary changed = fields;
        changed[c.key] = c.value;
        try {
            readSecretArchive({changed});
            FAIL() << c.description;
        } catch (const DecodingError& error) {
            EXPECT_EQ(error.code(), 4864) << c.description;
            EXPECT_EQ(error.description(), c.description);
        }
    }
    EXPECT_THROW(readSecretArchive(text), DecodingError);
}

} // namespace
} // namespace vesk
