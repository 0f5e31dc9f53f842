#include "VeskPlatform/Linux/Chromium/DevToolsConnection.hpp"

#include "VeskPlatform/Linux/Chromium/WebEngineError.hpp"

#include <asio/buffer.hpp>
#include <asio/co_spawn.hpp>
#include <asio/use_awaitable.hpp>
#include <asio/write.hpp>
#include <string_view>
#include <utility>
#include <vector>

namespace vesk {
namespace {

constexpr std::size_t blockSize = std::size_t{256} << 10U;

std::exception_ptr broken(const std::string& description) {
    return std::make_exception_ptr(WebEngineError(WebEngineError::Kind::broken, description));
}

std::string refusal(const nlohmann::json& error) {
    return "The browser engine refused a command: " + error.value("message", std::string("no reason given")) + ".";
}

} // namespace

DevToolsConnection::DevToolsConnection(asio::any_io_executor executor, FileDescriptor commands, FileDescriptor answers)
    : commands_(executor, commands.release()), answers_(executor, answers.release()) {}

void DevToolsConnection::start(EventHandler handler) {
    handler_ = std::move(handler);
    auto self = shared_from_this();
    asio::co_spawn(answers_.get_executor(), readAll(), [self](std::exception_ptr failure) {
        if (failure) self->close(broken("The browser engine ended unexpectedly."));
    });
}

std::shared_ptr<DevToolsConnection::Command> DevToolsConnection::begin(const std::string& session,
                                                                       const std::string& method, Json parameters) {
    auto command = std::make_shared<Command>();
    if (closed_)
        command->answered.resume(closed_);
    else
        underWay_[post(session, method, std::move(parameters))] = command;
    return command;
}

std::shared_ptr<DevToolsConnection::Command> DevToolsConnection::expect() {
    auto command = std::make_shared<Command>();
    if (closed_)
        command->answered.resume(closed_);
    else
        underWay_[++lastIdentifier_] = command;
    return command;
}

Task<DevToolsConnection::Json> DevToolsConnection::result(std::shared_ptr<Command> command) {
    co_await command->answered.wait();
    co_return std::move(command->result);
}

Task<DevToolsConnection::Json> DevToolsConnection::call(std::string session, std::string method, Json parameters) {
    auto command = begin(session, method, std::move(parameters));
    co_await command->answered.wait();
    co_return std::move(command->result);
}

void DevToolsConnection::send(const std::string& session, const std::string& method, Json parameters) {
    if (!closed_) post(session, method, std::move(parameters));
}

std::int64_t DevToolsConnection::post(const std::string& session, const std::string& method, Json parameters) {
    Json message{{"id", ++lastIdentifier_}, {"method", method}, {"params", std::move(parameters)}};
    if (!session.empty()) message["sessionId"] = session;
    outgoing_.push_back(message.dump(-1, ' ', false, Json::error_handler_t::replace) + '\0');
    if (!writing_) {
        writing_ = true;
        auto self = shared_from_this();
        asio::co_spawn(commands_.get_executor(), writeAll(), [self](std::exception_ptr failure) {
            self->writing_ = false;
            if (failure) self->close(broken("The browser engine ended unexpectedly."));
        });
    }
    return lastIdentifier_;
}

Task<void> DevToolsConnection::writeAll() {
    while (!outgoing_.empty()) {
        const std::string message = std::move(outgoing_.front());
        outgoing_.pop_front();
        co_await asio::async_write(commands_, asio::buffer(message), asio::use_awaitable);
    }
}

Task<void> DevToolsConnection::readAll() {
    std::string held;
    std::vector<char> block(blockSize);
    while (true) {
        const std::size_t count = co_await answers_.async_read_some(asio::buffer(block), asio::use_awaitable);
        const std::size_t known = held.size();
        held.append(block.data(), count);
        std::size_t begin = 0;
        for (std::size_t end = held.find('\0', known); end != std::string::npos; end = held.find('\0', begin)) {
            receive(std::string_view(held).substr(begin, end - begin));
            begin = end + 1;
        }
        held.erase(0, begin);
    }
}

void DevToolsConnection::receive(std::string_view document) {
    const Json message = Json::parse(document, nullptr, false);
    if (!message.is_object()) return close(broken("The browser engine answered with something that is no JSON."));
    if (message.contains("id"))
        answer(message);
    else if (handler_ && !closed_)
        handler_(message.value("sessionId", std::string()), message.value("method", std::string()),
                 message.value("params", Json::object()));
}

void DevToolsConnection::answer(const Json& message) {
    const auto found = underWay_.find(message["id"].get<std::int64_t>());
    if (found == underWay_.end()) return; // nobody waits for it
    const std::shared_ptr<Command> command = found->second;
    underWay_.erase(found);
    if (message.contains("error")) return command->answered.resume(broken(refusal(message["error"])));
    command->result = message.value("result", Json::object());
    command->answered.resume();
}

void DevToolsConnection::close(std::exception_ptr reason) {
    if (closed_) return;
    closed_ = std::move(reason);
    std::error_code ignored;
    commands_.close(ignored);
    answers_.close(ignored);
    for (const auto& [identifier, command] : std::exchange(underWay_, {})) command->answered.resume(closed_);
}

} // namespace vesk
