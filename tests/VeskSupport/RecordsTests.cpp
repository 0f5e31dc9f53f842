#include "VeskSupport/Records.hpp"

#include <array>
#include <gtest/gtest.h>
#include <limits>

namespace vesk {

enum class Paper { letter, a4 };
template <>
inline constexpr auto rawValueTable<Paper> =
    std::array{std::pair{Paper::letter, std::string_view{"letter"}}, std::pair{Paper::a4, std::string_view{"a4"}}};

struct Inner {
    std::int32_t count = 0;
    bool operator==(const Inner&) const = default;
};
template <> inline constexpr auto recordTable<Inner> = recordFields(required("count", &Inner::count));

struct Sample {
    std::string name;
    std::optional<std::string> nickname;
    Paper paper = Paper::letter;
    double scale = 0;
    std::vector<Inner> inner;
    bool operator==(const Sample&) const = default;
};
template <>
inline constexpr auto recordTable<Sample> =
    recordFields(required("name", &Sample::name), optional("nickname", &Sample::nickname),
                 defaulted("paper", &Sample::paper), defaulted("scale", &Sample::scale),
                 required("inner", &Sample::inner));

struct Counted {
    std::vector<std::string> names;
    std::int64_t count = 0;
    std::optional<std::string> mail;
    std::map<std::string, Inner> places;
    bool operator==(const Counted&) const = default;
};
inline std::int64_t countOfNames(const Counted& record) { return static_cast<std::int64_t>(record.names.size()); }
template <>
inline constexpr auto recordTable<Counted> =
    recordFields(defaulted("names", &Counted::names), derived("count", &Counted::count, &countOfNames),
                 optional("mailBox", &Counted::mail).orElse("mail_box"), defaulted("places", &Counted::places));

struct Moment {
    Instant when{};
    Uuid identifier;
    std::optional<Instant> until;
    bool operator==(const Moment&) const = default;
};
template <>
inline constexpr auto recordTable<Moment> = recordFields(
    required("when", &Moment::when), required("identifier", &Moment::identifier), optional("until", &Moment::until));

/// Reads and writes itself: a number of minutes is kept as hours.
struct Shift {
    std::int64_t hours = 0;
    bool operator==(const Shift&) const = default;
};
template <> inline constexpr auto recordTable<Shift> = recordFields(required("minutes", &Shift::hours));
void read(JsonValue& json, const records::Path& path, Shift& out) {
    records::read<Shift>(json, path, out);
    out.hours /= 60;
}

namespace {

Counted decodeCounted(std::string_view text) { return fromJson<Counted>(parseJson(text)); }

Sample decode(std::string_view text) { return fromJson<Sample>(parseJson(text)); }

std::string failure(std::string_view text) {
    try {
        decode(text);
    } catch (const DecodingError& error) {
        return std::to_string(error.code()) + " " + error.description();
    }
    return "no failure";
}

TEST(Records, RoundTrip) {
    const Sample sample{.name = "n", .nickname = "m", .paper = Paper::a4, .scale = 1.5, .inner = {{1}, {2}}};
    EXPECT_EQ(decode(writeJson(toJson(sample))), sample);
}

TEST(Records, LeaveAbsentOptionalsOut) {
    EXPECT_EQ(writeJson(toJson(Sample{.name = "n", .nickname = {}, .inner = {}})),
              "{\n  \"inner\" : [\n\n  ],\n  \"name\" : \"n\",\n  \"paper\" : \"letter\",\n  \"scale\" : 0\n}");
}

TEST(Records, FollowTheRuleOfEachField) {
    EXPECT_EQ(decode(R"({"name":"n","inner":[],"more":1})"), (Sample{.name = "n", .nickname = {}, .inner = {}}));
    EXPECT_EQ(decode(R"({"name":"n","inner":[],"nickname":null,"paper":null})"),
              (Sample{.name = "n", .nickname = {}, .inner = {}}));
    EXPECT_EQ(decode(R"({"name":"n","inner":[{"count":3.0}],"scale":2})").inner.at(0).count, 3);
}

TEST(Records, NameThePathOfABadField) {
    const std::string_view begin = R"({"name":"n","inner":)";
    EXPECT_EQ(failure("[]"), "4864 The data cannot be read: the document is not an object.");
    EXPECT_EQ(failure(R"({"inner":[]})"), "4865 The data cannot be read: name is missing.");
    EXPECT_EQ(failure(R"({"name":null,"inner":[]})"), "4865 The data cannot be read: name is missing.");
    EXPECT_EQ(failure(R"({"name":1,"inner":[]})"), "4864 The data cannot be read: name is not a string.");
    EXPECT_EQ(failure(std::string(begin) + R"([{"count":1},{"count":"2"}]})"),
              "4864 The data cannot be read: inner[1].count is not a whole number.");
    EXPECT_EQ(failure(std::string(begin) + R"([{"count":1.5}]})"),
              "4864 The data cannot be read: inner[0].count is not a whole number.");
    EXPECT_EQ(failure(std::string(begin) + R"([{"count":4294967296}]})"),
              "4864 The data cannot be read: inner[0].count is not a whole number within its range.");
    EXPECT_EQ(failure(R"({"name":"n","inner":[],"paper":"legal"})"),
              "4864 The data cannot be read: paper is not one of \"letter\", \"a4\".");
    EXPECT_EQ(failure(R"({"name":"n","inner":[],"nickname":true})"),
              "4864 The data cannot be read: nickname is not a string.");
}

TEST(Records, DeriveAMissingFieldFromThoseAbove) {
    EXPECT_EQ(decodeCounted(R"({"names":["a","b"]})").count, 2);
    EXPECT_EQ(decodeCounted(R"({"names":["a","b"],"count":null})").count, 2);
    EXPECT_EQ(decodeCounted(R"({"names":["a","b"],"count":5})").count, 5);
    EXPECT_THROW(decodeCounted(R"({"names":["a","b"],"count":"5"})"), DecodingError);
}

TEST(Records, ReadAnotherSpellingAndWriteTheirOwn) {
    EXPECT_EQ(decodeCounted(R"({"mail_box":"m"})").mail, "m");
    EXPECT_EQ(decodeCounted(R"({"mailBox":null,"mail_box":"m"})").mail, "m");
    EXPECT_EQ(decodeCounted(R"({"mailBox":"w","mail_box":7})").mail, "w");
    EXPECT_EQ(decodeCounted("{}").mail, std::nullopt);
    EXPECT_THROW(decodeCounted(R"({"mailBox":7,"mail_box":"m"})"), DecodingError);
    EXPECT_EQ(writeJson(toJson(Counted{.names = {}, .mail = "m", .places = {}})),
              "{\n  \"count\" : 0,\n  \"mailBox\" : \"m\",\n  \"names\" : [\n\n  ],\n  \"places\" : {\n\n  }\n}");
}

TEST(Records, HoldMapsOfRecords) {
    const Counted record = decodeCounted(R"({"places":{"b":{"count":2},"a":{"count":1}}})");
    EXPECT_EQ(record.places, (std::map<std::string, Inner>{{"a", {1}}, {"b", {2}}}));
    EXPECT_EQ(fromJson<Counted>(toJson(record)), record);
    try {
        decodeCounted(R"({"places":{"home":{"count":true}}})");
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.description(), "The data cannot be read: places.home.count is not a whole number.");
    }
}

TEST(Records, AWholeNumberIsNeverReadAsItsNeighbour) {
    const auto read = [](const std::string& number) {
        JsonValue json = parseJson(number);
        std::int64_t whole = 0;
        records::read(json, records::Path(), whole);
        return whole;
    };
    EXPECT_EQ(read("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(read("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(read("9007199254740991.0"), 9007199254740991);
    EXPECT_EQ(read("-1e15"), -1000000000000000);
    for (const char* number : {"-9223372036854775809", "9223372036854775808", "9007199254740993.0",
                               "-4611686018427387904.5", "1e400000", "1e300"})
        EXPECT_THROW(read(number), DecodingError) << number;
}

TEST(Records, DatesAndIdentifiersAreStrings) {
    const std::string text = "{\n  \"identifier\" : \"0E984725-C51C-4BF4-9960-E1C80E27ABA0\",\n"
                             "  \"when\" : \"2026-04-26T14:03:22Z\"\n}";
    const auto moment = fromJson<Moment>(parseJson(text));
    EXPECT_EQ(moment.identifier.lowercaseText(), "0e984725-c51c-4bf4-9960-e1c80e27aba0");
    EXPECT_EQ(moment.when.time_since_epoch(), std::chrono::seconds(1777212202));
    EXPECT_EQ(writeJson(toJson(moment)), text);
    EXPECT_EQ(fromJson<Moment>(parseJson(R"({"when":"2026-04-26T16:03:22+02:00","until":null,
                  "identifier":"0e984725-c51c-4bf4-9960-e1c80e27aba0"})")),
              moment);
}

TEST(Records, OtherDatesAndIdentifiersAreRefused) {
    const auto failureOf = [](const std::string& when, const std::string& identifier) -> std::string {
        try {
            fromJson<Moment>(parseJson(R"({"when":)" + when + R"(,"identifier":)" + identifier + "}"));
            return "no failure";
        } catch (const DecodingError& error) {
            return error.description();
        }
    };
    const std::string date = R"("2026-04-26T14:03:22Z")", identifier = R"("0E984725-C51C-4BF4-9960-E1C80E27ABA0")";
    EXPECT_EQ(failureOf(date, identifier), "no failure");
    for (const char* wrong : {R"("2026-04-26T14:03:22.5Z")", R"("2026-04-26 14:03:22Z")", R"("2026-04-26T14:03:22")",
                              R"("2026-02-30T14:03:22Z")", R"("")", R"("today")", R"("0001-01-01T00:30:00+01:00")",
                              R"("9999-12-31T23:30:00-01:00")"})
        EXPECT_EQ(failureOf(wrong, identifier), "The data cannot be read: when is not a date of ISO 8601.") << wrong;
    EXPECT_EQ(failureOf("1777212202", identifier), "The data cannot be read: when is not a string.");
    EXPECT_EQ(failureOf(date, R"("0E984725")"), "The data cannot be read: identifier is not a UUID.");
    EXPECT_EQ(failureOf(date, "7"), "The data cannot be read: identifier is not a string.");
}

TEST(Records, ATypeMayReadItself) { EXPECT_EQ(fromJson<Shift>(parseJson(R"({"minutes":180})")).hours, 3); }

} // namespace
} // namespace vesk
