#include "VeskSupport/CompactJson.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

std::string again(const std::string& text) { return writeCompactJson(parseJson(text)); }

TEST(CompactJson, LeavesOutWhatMeansNothing) {
    EXPECT_EQ(again(R"( { "b" : [ 1 , 2.5, true, null ], "a" : { } , "c":[] } )"),
              R"({"a":{},"b":[1,2.5,true,null],"c":[]})");
    EXPECT_EQ(again(" 7 "), "7");
}

TEST(CompactJson, KeepsWhatStandsInStrings) {
    for (const char* text : {R"({"a b":"c  d"})", R"(["\" : {","\\"," ",""])", R"(["\\\" : ,"])", R"(["line\n  two"])",
                             R"({"\\ \"":" : "})"})
        EXPECT_EQ(again(text), text);
}

} // namespace
} // namespace vesk
