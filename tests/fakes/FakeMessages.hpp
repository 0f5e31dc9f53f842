#pragma once

#include "VeskPlatform/MessagesScriptRunner.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <optional>

namespace vesk::test {

/// A messaging program with chats in memory; what is sent is kept. Scripts are recorded. With `result` set, every
/// script ends with it instead; with `startFailure`, none can be started.
class FakeMessages : public MessagesScriptRunner {
public:
    std::vector<std::string> chats;
    std::vector<MessagesSendQuestion> sent;
    std::optional<ScriptRunResult> result;
    std::optional<ErrorRecord> startFailure;
    std::vector<MessagesScript> scripts;

    ScriptRunResult run(const MessagesScript& script) override {
        scripts.push_back(script);
        if (startFailure) throw *startFailure;
        if (result) return *result;
        return std::visit([&](const auto& question) { return answer(question); }, script.question);
    }

private:
    ScriptRunResult answer(const MessagesListQuestion& question) const {
        ScriptRunResult listed;
        const auto count = std::min(chats.size(), static_cast<std::size_t>(question.limit));
        for (std::size_t i = 0; i < count; ++i) listed.output += chats[i] + "\n";
        listed.output += "\n"; // the runner ends its output with a line end of its own
        return listed;
    }
    ScriptRunResult answer(const MessagesSendQuestion& question) {
        sent.push_back(question);
        return {};
    }
};

} // namespace vesk::test
