#pragma once

#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/Continuation.hpp"
#include "VeskSupport/Task.hpp"

#include <asio/any_io_executor.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

namespace vesk {

/// The two pipes of a browser engine that speaks the DevTools protocol: JSON documents, each with a zero byte at its
/// end. Commands may be under way at the same time. Used on one executor.
class DevToolsConnection : public std::enable_shared_from_this<DevToolsConnection> {
public:
    using Json = nlohmann::json;
    /// Hears events; its session is empty for those of the browser itself.
    using EventHandler = std::function<void(const std::string& session, const std::string& method, const Json&)>;

    DevToolsConnection(asio::any_io_executor executor, FileDescriptor commands, FileDescriptor answers);

    /// Begins to read. The connection lives until `close`.
    void start(EventHandler handler);
    /// A command that is under way.
    struct Command {
        Continuation answered;
        Json result;
    };
    std::shared_ptr<Command> begin(const std::string& session, const std::string& method, Json parameters);
    /// Its result. Throws WebEngineError where the engine refuses it or is gone, or what `close` says.
    Task<Json> result(std::shared_ptr<Command> command);
    /// Something that the caller ends when it hears the event; `close` ends it too.
    std::shared_ptr<Command> expect();
    /// Both in one.
    Task<Json> call(std::string session, std::string method, Json parameters);
    /// Sends a command whose result does not matter.
    void send(const std::string& session, const std::string& method, Json parameters);
    /// Ends it: commands that are under way, and later ones, throw `reason`.
    void close(std::exception_ptr reason);

private:
    std::int64_t post(const std::string& session, const std::string& method, Json parameters);
    Task<void> writeAll();
    Task<void> readAll();
    void receive(std::string_view document);
    void answer(const Json& message);

    asio::posix::stream_descriptor commands_, answers_;
    EventHandler handler_;
    std::map<std::int64_t, std::shared_ptr<Command>> underWay_;
    std::deque<std::string> outgoing_;
    std::exception_ptr closed_;
    std::int64_t lastIdentifier_ = 0;
    bool writing_ = false;
};

} // namespace vesk
