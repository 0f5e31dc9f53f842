#pragma once

#include "VeskPlatform/Platform.hpp"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace vesk {

class LoadedMessaging;
class SqliteConsent;

/// What the adapters are told by the program that makes them.
struct LinuxWiring {
    /// Title and short summary of a capability, by its identifier; what a prompt shows.
    std::function<std::pair<std::string, std::string>(const std::string& capabilityId)> describeCapability;
    /// One line for the diagnostic log.
    std::function<void(const std::string& message)> log;
};

/// The ports on Linux. Accessors build on first use; the platform outlives whatever it has handed out.
class LinuxPlatform : public Platform {
public:
    explicit LinuxPlatform(LinuxWiring wiring);
    ~LinuxPlatform() override;

    /// Replaces the wiring's log, for a logger that itself needs the platform.
    void setLog(std::function<void(const std::string& message)> log);

    const Bundle& mainBundle() override;
    ApplicationAutomation& applicationAutomation() override;
    BundleInformation& bundleInformation() override;
    Clock& clock() override;
    CloudAccount& cloudAccount() override;
    Consent& consent() override;
    Desktop& desktop() override;
    Environment& environment() override;
    std::shared_ptr<ContactStore> openContactStore() override;
    std::shared_ptr<EventStore> openEventStore() override;
    std::shared_ptr<ReminderStore> openReminderStore() override;
    FileManager& fileManager() override;
    FilePlaces& filePlaces() override;
    FileReader& fileReader() override;
    HttpTransport& httpTransport() override;
    KeychainItems& keychainItems() override;
    LocaleSettings& localeSettings() override;
    MailScriptRunner& mailScriptRunner() override;
    MediaFramework& mediaFramework() override;
    MessagesScriptRunner& messagesScriptRunner() override;
    MonotonicClock& monotonicClock() override;
    SerialQueue& logQueue() override;
    PdfDocuments& pdfDocuments() override;
    PrivateFiles& privateFiles() override;
    Processes& processes() override;
    ProgramLauncher& programLauncher() override;
    PropertyListCoder& propertyListCoder() override;
    RandomSource& randomSource() override;
    SettingsOpener& settingsOpener() override;
    Sleeper& sleeper() override;
    UserDefaults& userDefaults() override;
    WebEngine& webEngine() override;

private:
    struct Adapters;
    LoadedMessaging& loadedMessaging();
    SqliteConsent& sqliteConsent();

    LinuxWiring wiring_;
    std::unique_ptr<Adapters> adapters_;
};

} // namespace vesk
