#import "VeskPlatform/Apple/ApplePlatform.hpp"

#import "VeskPlatform/Apple/AVFoundationMedia.hpp"
#import "VeskPlatform/Apple/AppleDesktop.hpp"
#import "VeskPlatform/Apple/AppleEventAutomation.hpp"
#import "VeskPlatform/Apple/AppleScriptMailRunner.hpp"
#import "VeskPlatform/Apple/ApplicationBundle.hpp"
#import "VeskPlatform/Apple/CodeSigningBundleInformation.hpp"
#import "VeskPlatform/Apple/ContactsContactStore.hpp"
#import "VeskPlatform/Apple/DispatchSerialQueue.hpp"
#import "VeskPlatform/Apple/EventKitEventStore.hpp"
#import "VeskPlatform/Apple/EventKitReminderStore.hpp"
#import "VeskPlatform/Apple/FoundationFileManager.hpp"
#import "VeskPlatform/Apple/FoundationFileReader.hpp"
#import "VeskPlatform/Apple/FoundationLocaleSettings.hpp"
#import "VeskPlatform/Apple/FoundationPrivateFiles.hpp"
#import "VeskPlatform/Apple/FoundationPropertyListCoder.hpp"
#import "VeskPlatform/Apple/FoundationUserDefaults.hpp"
#import "VeskPlatform/Apple/OsascriptMessagesRunner.hpp"
#import "VeskPlatform/Apple/PDFKitDocuments.hpp"
#import "VeskPlatform/Apple/PrivacyConsent.hpp"
#import "VeskPlatform/Apple/ProcessInfoEnvironment.hpp"
#import "VeskPlatform/Apple/ProtectedFilePlaces.hpp"
#import "VeskPlatform/Apple/SecurityKeychainItems.hpp"
#import "VeskPlatform/Apple/SecurityRandomSource.hpp"
#import "VeskPlatform/Apple/TaskProgramLauncher.hpp"
#import "VeskPlatform/Apple/URLSessionTransport.hpp"
#import "VeskPlatform/Apple/UbiquityCloudAccount.hpp"
#import "VeskPlatform/Apple/WebKitEngine.hpp"
#import "VeskPlatform/Apple/WorkspaceSettingsOpener.hpp"
#include "VeskPlatform/Portable/BuiltOnce.hpp"
#include "VeskPlatform/Portable/PosixProcesses.hpp"
#include "VeskPlatform/Portable/SteadyMonotonicClock.hpp"
#include "VeskPlatform/Portable/SystemClock.hpp"
#include "VeskPlatform/Portable/TimerSleeper.hpp"

#include <optional>

namespace vesk {

/// The log's queue comes last, so that its blocks have run before anything they use goes.
struct ApplePlatform::Adapters {
    std::optional<Bundle> bundle;
    std::optional<AppleDesktop> desktop;
    std::optional<AppleEventAutomation> automation;
    std::optional<AppleScriptMailRunner> mail;
    std::optional<AVFoundationMedia> media;
    std::optional<CodeSigningBundleInformation> bundleInformation;
    std::optional<FoundationFileManager> fileManager;
    std::optional<FoundationFileReader> fileReader;
    std::optional<FoundationLocaleSettings> localeSettings;
    std::optional<FoundationPrivateFiles> privateFiles;
    std::optional<FoundationPropertyListCoder> propertyListCoder;
    std::optional<FoundationUserDefaults> userDefaults;
    std::optional<OsascriptMessagesRunner> messages;
    std::optional<PDFKitDocuments> pdfDocuments;
    std::optional<PosixProcesses> processes;
    std::optional<PrivacyConsent> consent;
    std::optional<ProcessInfoEnvironment> environment;
    std::optional<ProtectedFilePlaces> filePlaces;
    std::optional<SecurityKeychainItems> keychainItems;
    std::optional<SecurityRandomSource> randomSource;
    std::optional<SteadyMonotonicClock> monotonicClock;
    std::optional<SystemClock> clock;
    std::optional<TaskProgramLauncher> programLauncher;
    std::optional<TimerSleeper> sleeper;
    std::optional<UbiquityCloudAccount> cloudAccount;
    std::optional<URLSessionTransport> httpTransport;
    std::optional<WebKitEngine> webEngine;
    std::optional<WorkspaceSettingsOpener> settingsOpener;
    std::optional<DispatchSerialQueue> logQueue;
};

ApplePlatform::ApplePlatform() : adapters_(std::make_unique<Adapters>()) {}
ApplePlatform::~ApplePlatform() = default;

const Bundle& ApplePlatform::mainBundle() {
    if (!adapters_->bundle) adapters_->bundle = runningBundle();
    return *adapters_->bundle;
}

ApplicationAutomation& ApplePlatform::applicationAutomation() { return builtOnce(adapters_->automation); }
BundleInformation& ApplePlatform::bundleInformation() { return builtOnce(adapters_->bundleInformation); }
Clock& ApplePlatform::clock() { return builtOnce(adapters_->clock); }
CloudAccount& ApplePlatform::cloudAccount() { return builtOnce(adapters_->cloudAccount); }
Consent& ApplePlatform::consent() { return builtOnce(adapters_->consent); }
Desktop& ApplePlatform::desktop() { return builtOnce(adapters_->desktop); }
Environment& ApplePlatform::environment() { return builtOnce(adapters_->environment); }
std::shared_ptr<ContactStore> ApplePlatform::openContactStore() { return std::make_shared<ContactsContactStore>(); }
std::shared_ptr<EventStore> ApplePlatform::openEventStore() { return std::make_shared<EventKitEventStore>(); }
std::shared_ptr<ReminderStore> ApplePlatform::openReminderStore() { return std::make_shared<EventKitReminderStore>(); }
FileManager& ApplePlatform::fileManager() { return builtOnce(adapters_->fileManager); }
FilePlaces& ApplePlatform::filePlaces() { return builtOnce(adapters_->filePlaces); }
FileReader& ApplePlatform::fileReader() { return builtOnce(adapters_->fileReader); }
HttpTransport& ApplePlatform::httpTransport() { return builtOnce(adapters_->httpTransport); }
KeychainItems& ApplePlatform::keychainItems() { return builtOnce(adapters_->keychainItems); }
LocaleSettings& ApplePlatform::localeSettings() { return builtOnce(adapters_->localeSettings); }
MailScriptRunner& ApplePlatform::mailScriptRunner() { return builtOnce(adapters_->mail); }
MediaFramework& ApplePlatform::mediaFramework() { return builtOnce(adapters_->media); }
MessagesScriptRunner& ApplePlatform::messagesScriptRunner() { return builtOnce(adapters_->messages); }
MonotonicClock& ApplePlatform::monotonicClock() { return builtOnce(adapters_->monotonicClock); }
SerialQueue& ApplePlatform::logQueue() { return builtOnce(adapters_->logQueue, "app.veskhq.shell-debug-log"); }
PdfDocuments& ApplePlatform::pdfDocuments() { return builtOnce(adapters_->pdfDocuments); }
PrivateFiles& ApplePlatform::privateFiles() { return builtOnce(adapters_->privateFiles); }
Processes& ApplePlatform::processes() { return builtOnce(adapters_->processes); }
ProgramLauncher& ApplePlatform::programLauncher() { return builtOnce(adapters_->programLauncher); }
PropertyListCoder& ApplePlatform::propertyListCoder() { return builtOnce(adapters_->propertyListCoder); }
RandomSource& ApplePlatform::randomSource() { return builtOnce(adapters_->randomSource); }
SettingsOpener& ApplePlatform::settingsOpener() { return builtOnce(adapters_->settingsOpener); }
Sleeper& ApplePlatform::sleeper() { return builtOnce(adapters_->sleeper); }
UserDefaults& ApplePlatform::userDefaults() { return builtOnce(adapters_->userDefaults); }
WebEngine& ApplePlatform::webEngine() { return builtOnce(adapters_->webEngine); }

} // namespace vesk
