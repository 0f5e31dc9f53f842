#include "VeskCapabilityBroker/DescriptorOutput.hpp"
#include "VeskCapabilityBroker/JsonOutput.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "tests/fakes/FakeByteOutput.hpp"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <limits>
#include <thread>
#include <unistd.h>

namespace vesk {
namespace {

struct Sample {
    double number = 0;
    std::optional<std::string> text;
};

} // namespace

template <>
inline constexpr auto recordTable<Sample> =
    recordFields(required("number", &Sample::number), optional("text", &Sample::text));

namespace {

TEST(JsonOutput, WrapperEncodesExactlyTheRecord) {
    const Sample sample{.number = 0.5, .text = "a/b"};
    EXPECT_EQ(AnyEncodable(sample).encodeClosure(JsonEncoder{}), writeJson(toJson(sample)));
}

TEST(JsonOutput, DocumentAndLineBreakAreTwoWrites) {
    test::FakeByteOutput output;
    writeJSON(Sample{.number = 2, .text = "a/b"}, output);
    EXPECT_EQ(output.writes, (std::vector<std::string>{"{\n  \"number\" : 2,\n  \"text\" : \"a\\/b\"\n}", "\n"}));
}

TEST(JsonOutput, NothingIsWrittenWhereEncodingFails) {
    test::FakeByteOutput output;
    EXPECT_THROW(writeJSON(Sample{.number = std::numeric_limits<double>::infinity(), .text = {}}, output), ErrorRecord);
    EXPECT_TRUE(output.writes.empty());
}

class Pipe {
public:
    Pipe() { EXPECT_EQ(::pipe(ends.data()), 0); }
    ~Pipe() {
        for (const int end : ends)
            if (end >= 0) ::close(end);
    }
    void closeReader() {
        ::close(ends[0]);
        ends[0] = -1;
    }
    void closeWriter() {
        ::close(ends[1]);
        ends[1] = -1;
    }
    std::array<int, 2> ends{-1, -1};
};

std::string readAll(int descriptor) {
    std::string result;
    std::array<char, 65536> buffer;
    for (;;) {
        const ssize_t got = ::read(descriptor, buffer.data(), buffer.size());
        if (got <= 0) return result;
        result.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

void expectWritesAll(Pipe& pipe) {
    const std::string bytes(1 << 20, 'x');
    std::string received;
    std::thread reader([&] { received = readAll(pipe.ends[0]); });
    DescriptorOutput(pipe.ends[1], "pipe").write(bytes);
    pipe.closeWriter();
    reader.join();
    EXPECT_TRUE(received == bytes) << received.size();
}

TEST(DescriptorOutput, WritesAllOfMoreThanThePipeHolds) {
    Pipe pipe;
    expectWritesAll(pipe);
}

TEST(DescriptorOutput, WaitsForAPipeThatDoesNotBlock) {
    Pipe pipe;
    ASSERT_EQ(::fcntl(pipe.ends[1], F_SETFL, O_NONBLOCK), 0);
    expectWritesAll(pipe);
}

int errorOfWriting(int descriptor) {
    try {
        DescriptorOutput(descriptor, "there").write("x");
        return 0;
    } catch (const PosixError& error) {
        EXPECT_EQ(error.description().substr(0, 7), "there: ");
        return static_cast<int>(error.code());
    }
}

TEST(DescriptorOutput, FailuresAreThePlatformsErrors) {
    std::signal(SIGPIPE, SIG_IGN);
    Pipe pipe;
    pipe.closeReader();
    EXPECT_EQ(errorOfWriting(pipe.ends[1]), EPIPE);

    const int full = ::open("/dev/full", O_WRONLY);
    ASSERT_GE(full, 0);
    EXPECT_EQ(errorOfWriting(full), ENOSPC);
    ::close(full);
    EXPECT_EQ(errorOfWriting(full), EBADF);
}

} // namespace
} // namespace vesk
