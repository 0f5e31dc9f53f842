#include "VeskCapabilityBroker/Dispatch.hpp"

#include "VeskCapabilityBroker/CapabilityRequests.hpp"
#include "VeskCapabilityBroker/RequestFiles.hpp"
#include "VeskShellCore/BrokerPaths.hpp"
#include "VeskShellCore/CalendarOperations.hpp"
#include "VeskShellCore/CapabilityScreenCaptureSupport.hpp"
#include "VeskShellCore/CapabilityStatuses.hpp"
#include "VeskShellCore/ContactsOperations.hpp"
#include "VeskShellCore/MailOperations.hpp"
#include "VeskShellCore/MessagesOperations.hpp"
#include "VeskShellCore/NativeControlOperations.hpp"
#include "VeskShellCore/TodoOperations.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <string>
#include <string_view>
#include <utility>

namespace vesk {
namespace {

constexpr int absentOperation = 70;

ErrorRecord notPartOfThisBuild(std::string_view word) {
    return {"VeskCapabilityBroker", absentOperation,
            "The command \"" + std::string(word) + "\" is not part of this build."};
}

/// One overload per command: its row of the table. Outlives the tasks that it returns.
class Rows {
public:
    explicit Rows(Platform& platform, std::string_view word)
        : platform_(platform), bundle_(platform.mainBundle()), word_(word) {}

    // ---- Capabilities

    Task<AnyEncodable> operator()(command::Status) { co_return co_await capabilityReport(platform_); }

    Task<AnyEncodable> operator()(command::Request command) {
        CapabilityRequestResponse response{.requested = command.kind, .report = {}};
        response.report = co_await requestCapability(platform_, command.kind);
        co_return response;
    }

    Task<AnyEncodable> operator()(command::OpenSettings command) {
        openSystemSettings(platform_, command.kind);
        CapabilityRequestResponse response{.requested = command.kind, .report = {}};
        response.report = co_await capabilityReport(platform_);
        co_return response;
    }

    // ---- Calendar

    Task<AnyEncodable> operator()(command::CalendarList) {
        co_return co_await VeskCalendarOperations::listCalendars(platform_, bundle_);
    }
    Task<AnyEncodable> operator()(command::CalendarToday) {
        co_return co_await VeskCalendarOperations::listToday(platform_, bundle_);
    }
    Task<AnyEncodable> operator()(command::CalendarDate c) {
        co_return co_await VeskCalendarOperations::listForDate(platform_, std::move(c.date), bundle_);
    }
    Task<AnyEncodable> operator()(command::CalendarNamed c) {
        co_return co_await VeskCalendarOperations::listCalendarToday(platform_, std::move(c.name), bundle_);
    }
    Task<AnyEncodable> operator()(command::CalendarNext) {
        co_return co_await VeskCalendarOperations::nextEvent(platform_, bundle_);
    }
    Task<AnyEncodable> operator()(command::CalendarSnapshot c) {
        co_return co_await VeskCalendarOperations::snapshotEvents(platform_, std::move(c.startAt), std::move(c.endAt),
                                                                  std::move(c.excludeCalendarIdentifiers),
                                                                  std::move(c.excludeCalendarNames), bundle_);
    }
    Task<AnyEncodable> operator()(command::CalendarCreate c) {
        co_return co_await VeskCalendarOperations::createEvent(platform_, std::move(c.calendarName), std::move(c.title),
                                                               std::move(c.startAt), std::move(c.endAt), c.allDay,
                                                               std::move(c.location), std::move(c.notes), bundle_);
    }
    Task<AnyEncodable> operator()(command::CalendarRespondInvite c) {
        co_return co_await VeskCalendarOperations::respondToInvite(
            platform_, std::move(c.response), std::move(c.eventIdentifier), std::move(c.sourceKey), std::move(c.title),
            std::move(c.startAt), std::move(c.proposedStartAt), std::move(c.proposedEndAt), bundle_);
    }

    // ---- To-dos

    Task<AnyEncodable> operator()(command::TodoList c) {
        co_return VeskTodoOperations::list(platform_, c.view, bundle_);
    }
    Task<AnyEncodable> operator()(command::TodoStats) { co_return VeskTodoOperations::stats(platform_, bundle_); }
    Task<AnyEncodable> operator()(command::TodoAdd c) {
        co_return VeskTodoOperations::add(platform_, c.title, c.notes, c.due, bundle_);
    }
    Task<AnyEncodable> operator()(command::TodoComplete c) {
        co_return VeskTodoOperations::complete(platform_, c.id, bundle_);
    }
    Task<AnyEncodable> operator()(command::TodoReopen c) {
        co_return VeskTodoOperations::reopen(platform_, c.id, bundle_);
    }
    Task<AnyEncodable> operator()(command::TodoDelete c) {
        co_return VeskTodoOperations::delete_(platform_, c.id, bundle_);
    }
    Task<AnyEncodable> operator()(command::TodoUpdate c) {
        co_return VeskTodoOperations::update(platform_, c.id, c.title, c.notes, c.due, c.clearDue, bundle_);
    }

    // ---- Contacts

    Task<AnyEncodable> operator()(command::ContactsSearch c) {
        co_return co_await VeskContactsOperations::searchContacts(platform_, std::move(c.query), bundle_);
    }
    Task<AnyEncodable> operator()(command::ContactsSave c) {
        auto request = readContactSaveRequest(platform_.fileReader(), c.requestPath);
        co_return co_await VeskContactsOperations::saveContact(platform_, std::move(request), bundle_);
    }

    // ---- Messages and mail, behind their gates

    Task<AnyEncodable> operator()(command::MessagesList c) {
        co_await ensureCapabilityGranted(platform_, CapabilityKind::messages);
        co_return VeskMessagesOperations::listRecentChats(platform_, c.limit, bundle_);
    }
    Task<AnyEncodable> operator()(command::MessagesSend c) {
        co_await ensureCapabilityGranted(platform_, CapabilityKind::messages);
        co_return VeskMessagesOperations::sendMessage(platform_, c.phone, c.message, bundle_);
    }
    Task<AnyEncodable> operator()(command::MailList c) {
        co_await ensureCapabilityGranted(platform_, CapabilityKind::mail);
        co_return VeskMailOperations::listMessages(platform_, c.view, c.limit, bundle_);
    }
    Task<AnyEncodable> operator()(command::MailCheckFollowup c) {
        co_await ensureCapabilityGranted(platform_, CapabilityKind::mail);
        co_return VeskMailOperations::checkFollowup(platform_, c.sourceId, c.messageId, c.sender, c.subject, c.sinceAt,
                                                    c.limit, bundle_);
    }

    // ---- The desktop

    Task<AnyEncodable> operator()(command::ActiveApp) {
        co_return co_await VeskNativeControlOperations::activeApp(platform_);
    }
    Task<AnyEncodable> operator()(command::FocusedElement) {
        co_return co_await VeskNativeControlOperations::focusedElement(platform_);
    }
    Task<AnyEncodable> operator()(command::ActivateApp c) {
        co_return co_await VeskNativeControlOperations::activateApp(platform_, std::move(c.nameOrBundle));
    }
    Task<AnyEncodable> operator()(command::Click c) {
        co_return co_await VeskNativeControlOperations::click(platform_, c.normalizedX, c.normalizedY, c.button);
    }
    Task<AnyEncodable> operator()(command::Type c) {
        co_return co_await VeskNativeControlOperations::typeText(platform_, std::move(c.text));
    }
    Task<AnyEncodable> operator()(command::Key c) {
        std::string key(rawValue(c.key));
        co_return co_await VeskNativeControlOperations::pressKey(platform_, std::move(key), std::move(c.modifiers));
    }
    Task<AnyEncodable> operator()(command::Screenshot c) {
        auto capturing = CapabilityScreenCaptureSupport::captureScreenshot(
            platform_, std::move(c.outputPath), executableBrokerPath(platform_), bundlePath(bundle_));
        co_return co_await std::move(capturing);
    }

    // ---- Commands whose operations this build does not hold; what comes before the operation still happens

    Task<AnyEncodable> operator()(command::MediaCompose c) {
        readMediaComposeRequest(platform_.fileReader(), c.requestPath);
        return absent();
    }
    Task<AnyEncodable> operator()(command::PdfRenderHTML c) {
        readPDFRenderRequest(platform_.fileReader(), c.requestPath);
        return absent();
    }

private:
    [[noreturn]] Task<AnyEncodable> absent() { throw notPartOfThisBuild(word_); }

    Platform& platform_;
    const Bundle& bundle_;
    std::string_view word_;
};

} // namespace

Task<AnyEncodable> dispatch(Platform& platform, BrokerCommand command) {
    Rows rows(platform, commandWord(command));
    co_return co_await std::visit([&](auto& payload) { return rows(std::move(payload)); }, command);
}

} // namespace vesk
