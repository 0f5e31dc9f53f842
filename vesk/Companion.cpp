#include "vesk/Companion.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "vesk/ComposeCommand.hpp"
#include "vesk/FilesCommand.hpp"
#include "vesk/LivenessCommand.hpp"
#include "vesk/PrintableText.hpp"
#include "vesk/ReleaseCommands.hpp"
#include "vesk/RuntimeCommands.hpp"
#include "vesk/SecretsCommand.hpp"
#include "vesk/SignInCommand.hpp"
#include "vesk/SignOutCommand.hpp"
#include "vesk/UpdateCommands.hpp"
#include "vesk/UpdateRecordCommand.hpp"
#include "vesk/Version.hpp"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <variant>

namespace vesk {
namespace {

enum ExitStatus { succeeded = 0, failed = 1, misused = 2, unsettled = 3 };

void print(const std::string& text) {
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        throw PosixError(errno, "standard output");
}

void complain(const std::string& description) {
    std::fprintf(stderr, "vesk: %s\n", printable(onOneLine(description)).c_str());
}

/// Runs one command with the adapters it needs; each returns the exit status.
class Companion {
public:
    explicit Companion(CompanionHost& host) : host_(host) {}

    int operator()(const HelpCommand& command) {
        print(command.text);
        return succeeded;
    }
    int operator()(const VersionCommand& command) {
        const VersionRecord version = builtVersion();
        print(command.json ? writeJson(toJson(version)) + "\n"
                           : "vesk " + version.version + " (build " + version.build + ")\n");
        return succeeded;
    }
    int operator()(const ConsentCommand& command) {
        print(host_.consent(command));
        return succeeded;
    }
    int operator()(const ConsentPageCommand& command) {
        host_.consentPage(command);
        return succeeded;
    }
    int operator()(const DoctorCommand& command) {
        const DoctorAnswer answer = host_.doctor(command);
        print(answer.text);
        if (!answer.blindness) return succeeded;
        complain(*answer.blindness);
        return failed;
    }
    int operator()(const ComposeCommand& command) { return printed(runCompose, command); }
    int operator()(const FilesCommand& command) { return printed(runFiles, command); }
    int operator()(const RuntimeCommand& command) { return printed(runRuntime, command); }
    int operator()(const BrokerCommand& command) { return printed(runBroker, command); }
    int operator()(const LivenessCommand& command) { return printed(runLiveness, command); }
    int operator()(const ChannelCommand& command) { return printed(runChannel, command); }
    int operator()(const TelegramBootstrapCommand& command) { return printed(runTelegramBootstrap, command); }
    int operator()(const UpdateRecordCommand& command) { return printed(runUpdateRecord, command); }
    int operator()(const SecretsCommand& command) { return printed(runSecrets, command); }
    int operator()(const SignInCommand& command) { return printed(runSignIn, command); }
    int operator()(const SignOutCommand& command) { return printed(runSignOut, command); }
    int operator()(const UpdateCommand& command) {
        const UpdateAnswer answer = runUpdate(command, *host_.makePlatform());
        print(answer.text);
        return answer.isSettled ? succeeded : unsettled;
    }

private:
    template <class Command> int printed(std::string (*run)(const Command&, Platform&), const Command& command) {
        print(run(command, *host_.makePlatform()));
        return succeeded;
    }

    CompanionHost& host_;
};

} // namespace

int runCompanion(std::vector<std::string> arguments, CompanionHost& host) {
    try {
        return std::visit(Companion(host), parseCommandLine(std::move(arguments)));
    } catch (const UsageError& error) {
        std::fprintf(stderr, "%s\n", error.usage().c_str());
        complain(error.what());
        return misused;
    } catch (const ErrorRecord& error) {
        complain(error.description());
    } catch (const std::exception& error) {
        complain(error.what());
    }
    return failed;
}

} // namespace vesk
