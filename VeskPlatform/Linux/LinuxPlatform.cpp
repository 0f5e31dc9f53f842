#include "VeskPlatform/Linux/LinuxPlatform.hpp"

#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/Linux/Chromium/ChromiumEngine.hpp"
#include "VeskPlatform/Linux/CompanionSettingsOpener.hpp"
#include "VeskPlatform/Linux/ConsentAutomation.hpp"
#include "VeskPlatform/Linux/ContactStoreOptions.hpp"
#include "VeskPlatform/Linux/Desktop/LinuxDesktop.hpp"
#include "VeskPlatform/Linux/DesktopReach.hpp"
#include "VeskPlatform/Linux/DriveCloudAccount.hpp"
#include "VeskPlatform/Linux/EventStoreOptions.hpp"
#include "VeskPlatform/Linux/HomePlaces.hpp"
#include "VeskPlatform/Linux/Http/LoadedHttpTransport.hpp"
#include "VeskPlatform/Linux/LoadedMessaging.hpp"
#include "VeskPlatform/Linux/MailOptions.hpp"
#include "VeskPlatform/Linux/MainBundle.hpp"
#include "VeskPlatform/Linux/Media/LoadedMedia.hpp"
#include "VeskPlatform/Linux/Pdf/LoadedPdfDocuments.hpp"
#include "VeskPlatform/Linux/PosixFileManager.hpp"
#include "VeskPlatform/Linux/PosixFileReader.hpp"
#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"
#include "VeskPlatform/Linux/PosixProgramLauncher.hpp"
#include "VeskPlatform/Linux/ProcessEnvironment.hpp"
#include "VeskPlatform/Linux/PropertyList.hpp"
#include "VeskPlatform/Linux/PropertyListBundleInformation.hpp"
#include "VeskPlatform/Linux/ReminderStoreOptions.hpp"
#include "VeskPlatform/Linux/Secrets/LinuxKeychain.hpp"
#include "VeskPlatform/Linux/SqliteConsent.hpp"
#include "VeskPlatform/Linux/SqliteUserDefaults.hpp"
#include "VeskPlatform/Linux/SystemLocaleSettings.hpp"
#include "VeskPlatform/Linux/SystemRandomSource.hpp"
#include "VeskPlatform/Linux/ThreadSerialQueue.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskPlatform/Linux/UserPrompt.hpp"
#include "VeskPlatform/Portable/BuiltOnce.hpp"
#include "VeskPlatform/Portable/ExecutableBundle.hpp"
#include "VeskPlatform/Portable/PosixProcesses.hpp"
#include "VeskPlatform/Portable/SteadyMonotonicClock.hpp"
#include "VeskPlatform/Portable/SystemClock.hpp"
#include "VeskPlatform/Portable/TimerSleeper.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <optional>

namespace vesk {

/// In the order of their needs: what stands below may use what stands above. The log's queue comes last, so that its
/// blocks have run before anything they use goes.
struct LinuxPlatform::Adapters {
    std::optional<Bundle> bundle;
    std::optional<SystemClock> clock;
    std::optional<SteadyMonotonicClock> monotonicClock;
    std::optional<ProcessEnvironment> environment;
    std::optional<SystemLocaleSettings> localeSettings;
    std::optional<PosixFileManager> fileManager;
    std::optional<PosixFileReader> fileReader;
    std::optional<HomePlaces> filePlaces;
    std::optional<PosixPrivateFiles> privateFiles;
    std::optional<PosixProcesses> processes;
    std::optional<PosixProgramLauncher> programLauncher;
    std::optional<LibplistCoder> propertyListCoder;
    std::optional<SystemRandomSource> randomSource;
    std::optional<CompanionSettingsOpener> settingsOpener;
    std::optional<PropertyListBundleInformation> bundleInformation;
    std::optional<DriveCloudAccount> cloudAccount;
    std::optional<TimerSleeper> sleeper;
    std::optional<MaildirScriptRunner> mail;
    std::optional<LoadedMessaging> messages;
    std::optional<LinuxKeychain> keychainItems;
    std::optional<UserPrompt> prompt;
    std::optional<SqliteConsent> consent;
    std::optional<ConsentAutomation> automation;
    std::optional<LinuxDesktop> desktop;
    std::optional<ChromiumEngine> webEngine;
    std::optional<LoadedPdfDocuments> pdfDocuments;
    std::optional<LoadedHttpTransport> httpTransport;
    std::optional<SqliteUserDefaults> userDefaults;
    std::unique_ptr<MediaFramework> mediaFramework;
    std::optional<ThreadSerialQueue> logQueue;
};

LinuxPlatform::LinuxPlatform(LinuxWiring wiring)
    : wiring_(std::move(wiring)), adapters_(std::make_unique<Adapters>()) {}
LinuxPlatform::~LinuxPlatform() = default;

void LinuxPlatform::setLog(std::function<void(const std::string& message)> log) { wiring_.log = std::move(log); }

const Bundle& LinuxPlatform::mainBundle() {
    if (!adapters_->bundle) adapters_->bundle = bundleOfExecutable(runningExecutable());
    return *adapters_->bundle;
}

Clock& LinuxPlatform::clock() { return builtOnce(adapters_->clock); }
Environment& LinuxPlatform::environment() { return builtOnce(adapters_->environment); }
FileManager& LinuxPlatform::fileManager() { return builtOnce(adapters_->fileManager); }
FilePlaces& LinuxPlatform::filePlaces() { return builtOnce(adapters_->filePlaces, environment(), fileReader()); }
FileReader& LinuxPlatform::fileReader() { return builtOnce(adapters_->fileReader); }
HttpTransport& LinuxPlatform::httpTransport() {
    return builtOnce(adapters_->httpTransport, moduleFolderOf(runningExecutable()), certificatePlaces(environment()));
}
KeychainItems& LinuxPlatform::keychainItems() {
    if (!adapters_->keychainItems) {
        auto options =
            linuxKeychainOptions(environment(), moduleFolderOf(runningExecutable()), stateFolder(environment()));
        options.service.canPrompt = [this] { return desktopCanBeReached(environment()); };
        options.service.log = options.file.log = wiring_.log;
        adapters_->keychainItems.emplace(std::move(options));
    }
    return *adapters_->keychainItems;
}

LocaleSettings& LinuxPlatform::localeSettings() { return builtOnce(adapters_->localeSettings, environment()); }
SerialQueue& LinuxPlatform::logQueue() { return builtOnce(adapters_->logQueue); }
MonotonicClock& LinuxPlatform::monotonicClock() { return builtOnce(adapters_->monotonicClock); }
PdfDocuments& LinuxPlatform::pdfDocuments() {
    return builtOnce(adapters_->pdfDocuments, moduleFolderOf(runningExecutable()));
}
PrivateFiles& LinuxPlatform::privateFiles() { return builtOnce(adapters_->privateFiles); }
Processes& LinuxPlatform::processes() { return builtOnce(adapters_->processes); }
ProgramLauncher& LinuxPlatform::programLauncher() { return builtOnce(adapters_->programLauncher); }
PropertyListCoder& LinuxPlatform::propertyListCoder() { return builtOnce(adapters_->propertyListCoder); }
RandomSource& LinuxPlatform::randomSource() { return builtOnce(adapters_->randomSource); }

SettingsOpener& LinuxPlatform::settingsOpener() { return builtOnce(adapters_->settingsOpener, runningExecutable()); }

BundleInformation& LinuxPlatform::bundleInformation() { return builtOnce(adapters_->bundleInformation, fileReader()); }
CloudAccount& LinuxPlatform::cloudAccount() { return builtOnce(adapters_->cloudAccount, environment()); }
MessagesScriptRunner& LinuxPlatform::messagesScriptRunner() { return loadedMessaging(); }
LoadedMessaging& LinuxPlatform::loadedMessaging() {
    return builtOnce(adapters_->messages, moduleFolderOf(runningExecutable()));
}
Desktop& LinuxPlatform::desktop() {
    if (!adapters_->desktop)
        adapters_->desktop.emplace(moduleFolderOf(runningExecutable()),
                                   DesktopSurroundings{environment(), stateFolder(environment()), wiring_.log});
    return *adapters_->desktop;
}

Sleeper& LinuxPlatform::sleeper() { return builtOnce(adapters_->sleeper); }

UserDefaults& LinuxPlatform::userDefaults() { return builtOnce(adapters_->userDefaults, stateFolder(environment())); }

MediaFramework& LinuxPlatform::mediaFramework() {
    if (!adapters_->mediaFramework)
        adapters_->mediaFramework = loadMediaFramework(moduleFolderOf(runningExecutable()), {.log = wiring_.log});
    return *adapters_->mediaFramework;
}

WebEngine& LinuxPlatform::webEngine() {
    return builtOnce(adapters_->webEngine, WebEngineOptions{.environment = environment(), .log = wiring_.log});
}

ApplicationAutomation& LinuxPlatform::applicationAutomation() {
    if (!adapters_->automation) {
        AutomationTargets targets;
        targets["com.apple.mail"] = {.consentRow = "mail", .reach = [this] { return reachOfMail(environment()); }};
        targets["com.apple.MobileSMS"] = {.consentRow = "messages",
                                          .reach = [this] { return loadedMessaging().reach(); },
                                          .start = [this] { loadedMessaging().start(); }};
        adapters_->automation.emplace(sqliteConsent(), std::move(targets));
    }
    return *adapters_->automation;
}

MailScriptRunner& LinuxPlatform::mailScriptRunner() {
    if (!adapters_->mail) adapters_->mail.emplace(mailOptions(environment(), localeSettings(), clock(), wiring_.log));
    return *adapters_->mail;
}

Consent& LinuxPlatform::consent() { return sqliteConsent(); }

SqliteConsent& LinuxPlatform::sqliteConsent() {
    if (!adapters_->consent) {
        UserPrompt& prompt = builtOnce(adapters_->prompt, DesktopDialog(environment()));
        adapters_->consent.emplace(ConsentDatabase(stateFolder(environment())), prompt, clock(),
                                   wiring_.describeCapability);
    }
    return *adapters_->consent;
}

std::shared_ptr<ContactStore> LinuxPlatform::openContactStore() {
    return std::make_shared<VcardContactStore>(contactStoreOptions(environment(), localeSettings(), wiring_.log),
                                               clock());
}

std::shared_ptr<EventStore> LinuxPlatform::openEventStore() {
    return std::make_shared<VdirEventStore>(eventStoreOptions(environment(), localeSettings(), wiring_.log), clock());
}

std::shared_ptr<ReminderStore> LinuxPlatform::openReminderStore() {
    return std::make_shared<VdirReminderStore>(reminderStoreOptions(environment(), localeSettings(), wiring_.log),
                                               clock());
}

} // namespace vesk
