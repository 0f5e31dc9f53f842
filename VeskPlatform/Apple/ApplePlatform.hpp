#pragma once

#include "VeskPlatform/Platform.hpp"

#include <memory>

namespace vesk {

/// The ports on macOS. Accessors build on first use; the platform outlives whatever it has handed out.
class ApplePlatform : public Platform {
public:
    ApplePlatform();
    ~ApplePlatform() override;

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
    std::unique_ptr<Adapters> adapters_;
};

} // namespace vesk
