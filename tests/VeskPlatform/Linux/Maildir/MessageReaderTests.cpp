#include "VeskPlatform/Linux/Maildir/MessageReader.hpp"
#include "tests/VeskPlatform/Linux/Maildir/MailWorld.hpp"

#include <gtest/gtest.h>
#include <thread>

namespace vesk {
namespace {

using maildir::MessageHeaders;
using maildir::MessageText;
using namespace std::string_literals;

MessageHeaders headersOf(const std::string& bytes) { return test::messageReader().headers(bytes); }
MessageText textOf(const std::string& bytes) { return test::messageReader().text(bytes); }

struct HeaderCase {
    const char* name;
    std::string bytes, expected;
};

class MessageSubjects : public testing::TestWithParam<HeaderCase> {};

TEST_P(MessageSubjects, AreDecoded) { EXPECT_EQ(headersOf(GetParam().bytes).subject, GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    , MessageSubjects,
    testing::Values(HeaderCase{"plain", "Subject: Hello\n\n", "Hello"}, HeaderCase{"missing", "From: a@b\n\n", ""},
                    HeaderCase{"quotedWords", "Subject: =?utf-8?q?Gr=C3=BC=C3=9Fe_aus?= =?utf-8?q?_K=C3=B6ln?=\n\n",
                               "Grüße aus Köln"},
                    HeaderCase{"base64", "Subject: =?iso-8859-1?B?R3L832U=?=\n\n", "Grüße"},
                    HeaderCase{"japanese", "Subject: =?iso-2022-jp?B?GyRCRnxLXBsoQg==?=\n\n", "日本"},
                    HeaderCase{"splitCharacter", "Subject: =?utf-8?q?Gr=C3?=\n =?utf-8?q?=BC=C3=9Fe?=\n\n", "Grüße"},
                    HeaderCase{"unknownSet", "Subject: =?x-no-such?q?abc?=\n\n", "abc"},
                    HeaderCase{"folded", "Subject: one\n two\r\n\tthree\n\n", "one two\tthree"},
                    HeaderCase{"rawUtf8", "Subject: Grüße\n\n", "Grüße"},
                    HeaderCase{"rawWindows1252", "Subject: Gr\xFC\xDF\x65 \x80\x35\n\n", "Grüße €5"},
                    HeaderCase{"carriageReturns", "Subject: Hello\r\nFrom: a@b\r\n\r\nSubject: body\r\n", "Hello"},
                    HeaderCase{"zeroByte", "Subject: one\0two\n\n"s, "one two"},
                    HeaderCase{"endsWithHeaders", "Subject: Hello", "Hello"},
                    HeaderCase{"nothingOfTheBody", "From: a@b\n\nSubject: body\n\n", ""},
                    HeaderCase{"onlyBody", "\nSubject: body\n", ""}, HeaderCase{"empty", "", ""},
                    HeaderCase{"caseOfNames", "SUBJECT: Hello\n\n", "Hello"}),
    [](const auto& tested) { return std::string(tested.param.name); });

class MessageSenders : public testing::TestWithParam<HeaderCase> {};

TEST_P(MessageSenders, AreShownAsPeopleSeeThem) { EXPECT_EQ(headersOf(GetParam().bytes).sender, GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    , MessageSenders,
    testing::Values(
        HeaderCase{"named", "From: Anna Beck <anna@example.org>\n\n", "Anna Beck <anna@example.org>"},
        HeaderCase{"bare", "From: anna@example.org\n\n", "anna@example.org"},
        HeaderCase{"onlyBrackets", "From: <anna@example.org>\n\n", "anna@example.org"},
        HeaderCase{"quoted", "From: \"Beck, Anna\" <anna@example.org>\n\n", "Beck, Anna <anna@example.org>"},
        HeaderCase{"encoded", "From: =?utf-8?q?J=C3=BCrgen?= <j@example.org>\n\n", "Jürgen <j@example.org>"},
        HeaderCase{"rawWindows1252", "From: J\xFCrgen <j@example.org>\n\n", "Jürgen <j@example.org>"},
        HeaderCase{"comment", "From: anna@example.org (Anna Beck)\n\n", "Anna Beck <anna@example.org>"},
        HeaderCase{"several", "From: A <a@example.org>, B <b@example.org>\n\n", "A <a@example.org>, B <b@example.org>"},
        HeaderCase{"missing", "Subject: x\n\n", ""}),
    [](const auto& tested) { return std::string(tested.param.name); });

class MessageIds : public testing::TestWithParam<HeaderCase> {};

TEST_P(MessageIds, HaveNoBrackets) { EXPECT_EQ(headersOf(GetParam().bytes).messageId, GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(, MessageIds,
                         testing::Values(HeaderCase{"usual", "Message-ID: <1@example.org>\n\n", "1@example.org"},
                                         HeaderCase{"bare", "Message-ID: 1@example.org\n\n", "1@example.org"},
                                         HeaderCase{"folded", "Message-Id:\n <1@example.org>\n\n", "1@example.org"},
                                         HeaderCase{"missing", "Subject: x\n\n", ""},
                                         HeaderCase{"empty", "Message-ID: <>\n\n", ""}),
                         [](const auto& tested) { return std::string(tested.param.name); });

struct DateCase {
    const char* name;
    std::string bytes;
    std::optional<Instant> expected;
};

class MessageDates : public testing::TestWithParam<DateCase> {};

TEST_P(MessageDates, AreThoseOfArrival) { EXPECT_EQ(headersOf(GetParam().bytes).date, GetParam().expected); }

const Instant noon = test::instant(1'780'488'000); // 2026-06-03 12:00 UTC

INSTANTIATE_TEST_SUITE_P(
    , MessageDates,
    testing::Values(
        DateCase{"date", "Date: Wed, 3 Jun 2026 14:00:00 +0200\n\n", noon},
        DateCase{"received", "Received: by x; Wed, 3 Jun 2026 12:00:00 +0000\nDate: Tue, 2 Jun 2026 12:00:00 +0000\n\n",
                 noon},
        DateCase{"topmostReceived",
                 "Received: from a\n\tby b; Wed, 3 Jun 2026 12:00:00 +0000 (UTC)\nReceived: by c; Tue, 2 Jun 2026 "
                 "12:00:00 +0000\n\n",
                 noon},
        DateCase{"receivedWithoutDate", "Received: by x\nDate: Wed, 3 Jun 2026 12:00:00 +0000\n\n", noon},
        DateCase{"semicolonInComment", "Received: by x (a;b); Wed, 3 Jun 2026 12:00:00 +0000\n\n", noon},
        DateCase{"namedZone", "Date: Wed, 3 Jun 2026 12:00:00 GMT\n\n", noon},
        DateCase{"garbage", "Date: soon\n\n", std::nullopt}, DateCase{"missing", "Subject: x\n\n", std::nullopt}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(MessageReader, ServesSeveralThreads) {
    const auto& reader = test::messageReader();
    const auto read = [&](const std::string& subject) {
        for (int i = 0; i < 200; ++i)
            EXPECT_EQ(reader.headers("Subject: =?iso-8859-1?q?" + subject + "=FC?=\n\n").subject, subject + "ü");
    };
    std::thread one(read, "one"), two(read, "two");
    one.join();
    two.join();
}

std::string part(const std::string& headers, const std::string& body) {
    return "--b\n" + headers + "\n\n" + body + "\n";
}
std::string multipart(const std::string& subtype, const std::string& parts) {
    return "Subject: x\nMIME-Version: 1.0\nContent-Type: multipart/" + subtype + "; boundary=\"b\"\n\n" + parts
           + "--b--\n";
}
const std::string plainType = "Content-Type: text/plain", htmlType = "Content-Type: text/html",
                  calendarType = "Content-Type: text/calendar; method=REQUEST";

struct TextCase {
    const char* name;
    std::string bytes, expected;
    bool isHtml = false;
};

class MessageTexts : public testing::TestWithParam<TextCase> {};

TEST_P(MessageTexts, AreTheFirstPartThatShowsSomething) {
    const MessageText text = textOf(GetParam().bytes);
    EXPECT_EQ(text.text.substr(0, text.text.find_last_not_of("\r\n") + 1), GetParam().expected);
    EXPECT_EQ(text.isHtml, GetParam().isHtml);
    EXPECT_EQ(text.found, !GetParam().expected.empty());
}

const std::string nested = "Content-Type: multipart/alternative; boundary=c\n\n--c\n" + htmlType
                           + "\n\n<p>Hi</p>\n--c\n" + plainType + "\n\nHi\n--c--";

INSTANTIATE_TEST_SUITE_P(
    , MessageTexts,
    testing::Values(
        TextCase{"plain", "Subject: x\n\nHello\nYou", "Hello\nYou"},
        TextCase{"html", "Content-Type: text/html\n\n<p>Hi</p>", "<p>Hi</p>", true},
        TextCase{
            "quotedPrintable",
            "Content-Type: text/plain; charset=iso-8859-1\nContent-Transfer-Encoding: quoted-printable\n\nGr=FC=DFe",
            "Grüße"},
        TextCase{"base64",
                 "Content-Type: text/plain; charset=utf-8\nContent-Transfer-Encoding: base64\n\nR3LDvMOfZQ==", "Grüße"},
        TextCase{"utf16",
                 "Content-Type: text/plain; charset=utf-16le\nContent-Transfer-Encoding: base64\n\nSABpAA==", "Hi"},
        TextCase{"rawUtf8", "Subject: x\n\nGrüße", "Grüße"},
        TextCase{"rawWindows1252", "Subject: x\n\nGr\xFC\xDF\x65", "Grüße"},
        TextCase{"lastByteOfWindows1252", "Subject: x\n\nAndr\xE9", "André"},
        TextCase{"cutOffUtf8", "Subject: x\n\nGrü\xC3", "Grü\xC3"},
        TextCase{"asciiThatIsNot", "Content-Type: text/plain; charset=us-ascii\n\nGrüße", "Grüße"},
        TextCase{"unknownSet", "Content-Type: text/plain; charset=x-no-such\n\nGrüße", "Grüße"},
        TextCase{"zeroBytes", "Subject: x\n\none\0two"s, "one two"},
        TextCase{"alternative", multipart("alternative", part(htmlType, "<p>Hi</p>") + part(plainType, "Hi")), "Hi"},
        TextCase{"blankAlternative", multipart("alternative", part(plainType, " ") + part(htmlType, "<p>Hi</p>")),
                 "<p>Hi</p>", true},
        TextCase{"nested", multipart("mixed", "--b\n" + nested + "\n"), "Hi"},
        TextCase{"mixedBeginsWithHtml", multipart("mixed", part(htmlType, "<p>Hi</p>") + part(plainType, "Footer")),
                 "<p>Hi</p>", true},
        TextCase{"calendarFirst", multipart("mixed", part(calendarType, "BEGIN:VCALENDAR") + part(plainType, "Come")),
                 "Come"},
        TextCase{"calendarAlone", multipart("mixed", part(calendarType, "BEGIN:VCALENDAR")), "BEGIN:VCALENDAR"},
        TextCase{
            "attachedFirst",
            multipart("mixed", part(plainType + "\nContent-Disposition: attachment", "File") + part(plainType, "Hi")),
            "Hi"},
        TextCase{"attachedAlone", multipart("mixed", part(plainType + "\nContent-Disposition: attachment", "File")),
                 "File"},
        TextCase{"picture", "Content-Type: image/png\n\nabc", ""},
        TextCase{"forwarded", multipart("mixed", part("Content-Type: message/rfc822", "Subject: y\n\nInner")), "Inner"},
        TextCase{"cutOff", "Content-Type: multipart/mixed; boundary=\"b\"\n\n--b\n" + plainType + "\n\nHel", "Hel"},
        TextCase{"withoutBoundary", "Content-Type: multipart/mixed\n\nHello", ""}, TextCase{"empty", "", ""}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(MessageReader, TellsWhetherATextIsWhole) {
    EXPECT_TRUE(textOf(multipart("mixed", part(plainType, "Hi") + part("Content-Type: image/png", "abc"))).complete);
    EXPECT_FALSE(textOf("Subject: x\n\nHello").complete) << "it reaches the end of the bytes";
}

TEST(MessageReader, SurvivesPartsWithoutEnd) {
    std::string deep;
    for (int i = 0; i < 2000; ++i)
        deep += "Content-Type: multipart/mixed; boundary=b" + std::to_string(i) + "\n\n--b" + std::to_string(i) + "\n";
    EXPECT_FALSE(textOf(deep + plainType + "\n\nHi").found);
}

std::string nestedGroups(const std::string& header, const std::string& separator) {
    std::string text = header + ":";
    for (int i = 0; i < 100'000; ++i) text += " g:" + separator;
    return text + " anna@example.org\n";
}

TEST(MessageReader, SurvivesGroupsOfAddressesInEachOther) {
    for (const char* header : {"From", "to", "CC", "Bcc", "Sender", "Reply-To", "From "})
        EXPECT_EQ(headersOf(nestedGroups(header, "") + "Subject: Hello\n\n").subject, "Hello") << header;
    EXPECT_EQ(headersOf(nestedGroups("From", "\r\n") + "Subject: Hello\n\n").subject, "Hello");
    const std::string forwarded = part("Content-Type: message/rfc822", nestedGroups("From", "\n") + "\nInner");
    EXPECT_EQ(textOf(multipart("mixed", forwarded)).text, "Inner");
}

TEST(MessageReader, LeavesOrdinaryGroupsAlone) {
    EXPECT_EQ(headersOf("From: Team: anna@example.org, ben@example.org;\n\n").sender, "Team");
    EXPECT_EQ(headersOf("Subject: " + std::string(200, ':') + "\n\n").subject, std::string(200, ':'));
}

} // namespace
} // namespace vesk
