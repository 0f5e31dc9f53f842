#include "tests/support/HttpServer.hpp"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {
namespace {

struct Pipe {
    Pipe() {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    }
    std::array<int, 2> ends{};
};

/// One line, or what came until the end or the deadline.
std::string readLine(int descriptor) {
    std::string line;
    for (char character = 0;;) {
        pollfd waiting{descriptor, POLLIN, 0};
        if (::poll(&waiting, 1, 20'000) != 1 || ::read(descriptor, &character, 1) != 1 || character == '\n')
            return line;
        line += character;
    }
}

} // namespace

HttpServer::HttpServer() {
    const Pipe input, output;
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(input.ends[0], STDIN_FILENO);
        ::dup2(output.ends[1], STDOUT_FILENO);
        constexpr const char* python = "/usr/bin/python3"; // by its path: it looks for its modules from there
        const std::string script = VESK_SOURCE_DIR "/tests/support/http_server.py";
        ::execl(python, python, "-E", script.c_str(), folder_.path().c_str(), nullptr);
        ::_exit(127);
    }
    ::close(input.ends[0]);
    ::close(output.ends[1]);
    input_ = input.ends[1];
    const std::string line = readLine(output.ends[0]);
    ::close(output.ends[0]);
    if (line.empty()) throw std::runtime_error("no HTTP server: apt install openssl python3");
    ports_ = parseJson(line);
}

HttpServer::~HttpServer() {
    ::close(input_);
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

std::string HttpServer::origin(const std::string& scheme, const std::string& name) const {
    const JsonValue& port = std::get<JsonValue::Object>(ports_.value).at(name);
    return scheme + "://127.0.0.1:" + std::to_string(std::get<std::int64_t>(port.value));
}

std::vector<JsonValue> HttpServer::requests() const {
    std::istringstream lines(folder_.read("requests"));
    std::vector<JsonValue> all;
    for (std::string line; std::getline(lines, line);) all.push_back(parseJson(line));
    return all;
}

} // namespace vesk::test
