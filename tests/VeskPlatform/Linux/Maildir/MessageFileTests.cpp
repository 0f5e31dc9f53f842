#include "VeskPlatform/Linux/Maildir/MessageFile.hpp"

#include "VeskPlatform/Linux/Maildir/HeaderBlock.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "tests/VeskPlatform/Linux/Maildir/MailWorld.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace vesk::maildir {
namespace {

/// Answers with a text of its own, and notes how many bytes it was shown.
class RecordingReader : public MessageReader {
public:
    std::function<MessageText(std::string_view)> answer;
    mutable std::vector<std::size_t> shown;

    MessageHeaders headers(std::string_view) const override { return {}; }
    MessageText text(std::string_view bytes) const override {
        shown.push_back(bytes.size());
        return answer(bytes);
    }
};

constexpr std::size_t kilobyte = 1024;

class MessageFiles : public testing::Test {
protected:
    test::TemporaryFolder folder;

    MessageFile file(const std::string& bytes) const { return MessageFile(folder.write("message", bytes)); }
    MessageFile fileOfSize(std::uintmax_t size) const {
        const std::string path = folder.write("message", "x");
        std::filesystem::resize_file(path, size);
        return MessageFile(path);
    }
    int errorOf(const std::string& name) const {
        try {
            const MessageFile opened(folder / name);
        } catch (const PosixError& error) {
            return static_cast<int>(error.code());
        }
        return 0;
    }
};

TEST_F(MessageFiles, AreRegularFiles) {
    ::mkfifo((folder / "pipe").c_str(), 0600);
    EXPECT_EQ(errorOf("pipe"), EINVAL);
    EXPECT_EQ(errorOf("none"), ENOENT);
    EXPECT_EQ(errorOf(""), EINVAL) << "a folder";
}

TEST_F(MessageFiles, GiveTheirHeadersAndLittleElse) {
    const std::string headers = "Subject: " + std::string(20 * kilobyte, 's') + "\n\n";
    const std::string bytes = file(headers + std::string(1024 * kilobyte, 'b')).headerBytes();
    EXPECT_TRUE(bytes.starts_with(headers));
    EXPECT_LE(bytes.size(), 64 * kilobyte);
    EXPECT_EQ(file("Subject: x").headerBytes(), "Subject: x");
    EXPECT_EQ(fileOfSize(5 * 1024 * kilobyte).headerBytes().size(), 1024 * kilobyte) << "headers without an end";
}

TEST_F(MessageFiles, AreReadNoFurtherThanTheirTextNeeds) {
    const MessageFile large = fileOfSize(200 * 1024 * kilobyte);
    RecordingReader reader;
    reader.answer = [](std::string_view) { return MessageText{"Hello", false, true, true}; };
    EXPECT_EQ(large.preview(reader, 600), "Hello");
    EXPECT_EQ(reader.shown, std::vector{256 * kilobyte}) << "the text ends there";
    reader.answer = [](std::string_view) { return MessageText{std::string(700, 'x'), false, true, false}; };
    EXPECT_EQ(large.preview(reader, 600), std::string(600, 'x'));
    EXPECT_EQ(reader.shown.size(), 2U) << "there is more than is shown";
    reader.shown.clear();
    reader.answer = [](std::string_view) { return MessageText{}; };
    EXPECT_EQ(large.preview(reader, 600), "");
    EXPECT_EQ(reader.shown, (std::vector{256 * kilobyte, 2048 * kilobyte, 8192 * kilobyte}));
}

TEST_F(MessageFiles, ShowTheirTextOnOneLine) {
    RecordingReader reader;
    reader.answer = [](std::string_view) { return MessageText{"one\r\ntwo\rthree\x1f\xFF", false, true, true}; };
    EXPECT_EQ(file("x").preview(reader, 600), "one two three \uFFFD");
    reader.answer = [](std::string_view) { return MessageText{"<p>one<p>two", true, true, true}; };
    EXPECT_EQ(file("x").preview(reader, 600), "one two");
    EXPECT_EQ(file("x").preview(reader, 5), "one t");
}

TEST(EndOfHeaders, IsBehindTheFirstEmptyLine) {
    const std::pair<const char*, std::size_t> cases[] = {{"A: b\n\nbody", 6},
                                                         {"A: b\r\n\r\nbody", 8},
                                                         {"\nbody", 1},
                                                         {"\r\nbody", 2},
                                                         {"A: b\n", std::string_view::npos},
                                                         {"A: b", std::string_view::npos},
                                                         {"", std::string_view::npos}};
    for (const auto& [bytes, end] : cases) EXPECT_EQ(endOfHeaders(bytes), end) << bytes;
}

} // namespace
} // namespace vesk::maildir
