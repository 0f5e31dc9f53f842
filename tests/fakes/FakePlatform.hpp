#pragma once

#include "VeskPlatform/Platform.hpp"
#include "tests/fakes/FakeAutomation.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeBundleInformation.hpp"
#include "tests/fakes/FakeConsent.hpp"
#include "tests/fakes/FakeContactStore.hpp"
#include "tests/fakes/FakeDesktop.hpp"
#include "tests/fakes/FakeEventStore.hpp"
#include "tests/fakes/FakeFiles.hpp"
#include "tests/fakes/FakeHttpTransport.hpp"
#include "tests/fakes/FakeKeychain.hpp"
#include "tests/fakes/FakeMail.hpp"
#include "tests/fakes/FakeMediaFramework.hpp"
#include "tests/fakes/FakeMessages.hpp"
#include "tests/fakes/FakeProgramLauncher.hpp"
#include "tests/fakes/FakePropertyListCoder.hpp"
#include "tests/fakes/FakeReminderStore.hpp"
#include "tests/fakes/FakeUserDefaults.hpp"
#include "tests/fakes/FakeWebEngine.hpp"

namespace vesk::test {

/// A whole small world: each port is a fake with state, made to be set up and looked at by tests.
class FakePlatform : public Platform {
public:
    Bundle bundle{.path = "/Applications/Vesk.app",
                  .executablePath = "/Applications/Vesk.app/Contents/Helpers/VeskCapabilityBroker",
                  .resourcesPath = "/Applications/Vesk.app/Contents/Resources"};
    FakeAutomation fakeAutomation;
    FakeBundleInformation fakeBundleInformation;
    FakeClock fakeClock;
    FakeCloudAccount fakeCloudAccount;
    FakeConsent fakeConsent;
    FakeContactStore fakeContactStore;
    FakeDesktop fakeDesktop;
    FakeEnvironment fakeEnvironment;
    FakeEventStore fakeEventStore;
    FakeFileManager fakeFileManager;
    FakeFilePlaces fakeFilePlaces;
    FakeFileReader fakeFileReader;
    FakeHttpTransport fakeHttpTransport;
    FakeKeychain fakeKeychain;
    FakeLocaleSettings fakeLocaleSettings;
    FakeSerialQueue fakeLogQueue;
    FakeMail fakeMail;
    FakeMediaFramework fakeMediaFramework;
    FakeMessages fakeMessages;
    FakeMonotonicClock fakeMonotonicClock;
    FakePdfDocuments fakePdfDocuments;
    FakePrivateFiles fakePrivateFiles;
    FakeProcesses fakeProcesses;
    FakeProgramLauncher fakeProgramLauncher;
    FakePropertyListCoder fakePropertyListCoder;
    FakeRandomSource fakeRandomSource;
    FakeReminderStore fakeReminderStore;
    FakeSettingsOpener fakeSettingsOpener;
    FakeSleeper fakeSleeper{fakeMonotonicClock};
    FakeUserDefaults fakeUserDefaults;
    FakeWebEngine fakeWebEngine;

    const Bundle& mainBundle() override { return bundle; }
    ApplicationAutomation& applicationAutomation() override { return fakeAutomation; }
    BundleInformation& bundleInformation() override { return fakeBundleInformation; }
    Clock& clock() override { return fakeClock; }
    CloudAccount& cloudAccount() override { return fakeCloudAccount; }
    Consent& consent() override { return fakeConsent; }
    Desktop& desktop() override { return fakeDesktop; }
    Environment& environment() override { return fakeEnvironment; }
    /// Every store that is opened is the one fake, which the test keeps.
    std::shared_ptr<ReminderStore> openReminderStore() override {
        return {std::shared_ptr<void>(), &fakeReminderStore};
    }
    std::shared_ptr<ContactStore> openContactStore() override { return {std::shared_ptr<void>(), &fakeContactStore}; }
    std::shared_ptr<EventStore> openEventStore() override { return {std::shared_ptr<void>(), &fakeEventStore}; }
    FileManager& fileManager() override { return fakeFileManager; }
    FilePlaces& filePlaces() override { return fakeFilePlaces; }
    FileReader& fileReader() override { return fakeFileReader; }
    HttpTransport& httpTransport() override { return fakeHttpTransport; }
    KeychainItems& keychainItems() override { return fakeKeychain; }
    LocaleSettings& localeSettings() override { return fakeLocaleSettings; }
    MailScriptRunner& mailScriptRunner() override { return fakeMail; }
    MediaFramework& mediaFramework() override { return fakeMediaFramework; }
    MessagesScriptRunner& messagesScriptRunner() override { return fakeMessages; }
    MonotonicClock& monotonicClock() override { return fakeMonotonicClock; }
    SerialQueue& logQueue() override { return fakeLogQueue; }
    PdfDocuments& pdfDocuments() override { return fakePdfDocuments; }
    PrivateFiles& privateFiles() override { return fakePrivateFiles; }
    Processes& processes() override { return fakeProcesses; }
    ProgramLauncher& programLauncher() override { return fakeProgramLauncher; }
    PropertyListCoder& propertyListCoder() override { return fakePropertyListCoder; }
    RandomSource& randomSource() override { return fakeRandomSource; }
    SettingsOpener& settingsOpener() override { return fakeSettingsOpener; }
    Sleeper& sleeper() override { return fakeSleeper; }
    UserDefaults& userDefaults() override { return fakeUserDefaults; }
    WebEngine& webEngine() override { return fakeWebEngine; }
};

} // namespace vesk::test
