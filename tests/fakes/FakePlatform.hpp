#pragma once

#include "VeskPlatform/Platform.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeConsent.hpp"
#include "tests/fakes/FakeContactStore.hpp"
#include "tests/fakes/FakeEventStore.hpp"
#include "tests/fakes/FakeFiles.hpp"
#include "tests/fakes/FakeReminderStore.hpp"

namespace vesk::test {

/// A whole small world: each port is a fake with state, made to be set up and looked at by tests.
class FakePlatform : public Platform {
public:
    Bundle bundle{.path = "/Applications/Vesk.app",
                  .executablePath = "/Applications/Vesk.app/Contents/Helpers/VeskCapabilityBroker",
                  .resourcesPath = "/Applications/Vesk.app/Contents/Resources"};
    FakeClock fakeClock;
    FakeConsent fakeConsent;
    FakeContactStore fakeContactStore;
    FakeEnvironment fakeEnvironment;
    FakeEventStore fakeEventStore;
    FakeFileReader fakeFileReader;
    FakeLocaleSettings fakeLocaleSettings;
    FakeSerialQueue fakeLogQueue;
    FakePrivateFiles fakePrivateFiles;
    FakeReminderStore fakeReminderStore;
    FakeSettingsOpener fakeSettingsOpener;

    const Bundle& mainBundle() override { return bundle; }
    Clock& clock() override { return fakeClock; }
    Consent& consent() override { return fakeConsent; }
    Environment& environment() override { return fakeEnvironment; }
    /// Every store that is opened is the one fake, which the test keeps.
    std::shared_ptr<ReminderStore> openReminderStore() override {
        return {std::shared_ptr<void>(), &fakeReminderStore};
    }
    std::shared_ptr<ContactStore> openContactStore() override { return {std::shared_ptr<void>(), &fakeContactStore}; }
    std::shared_ptr<EventStore> openEventStore() override { return {std::shared_ptr<void>(), &fakeEventStore}; }
    FileReader& fileReader() override { return fakeFileReader; }
    LocaleSettings& localeSettings() override { return fakeLocaleSettings; }
    SerialQueue& logQueue() override { return fakeLogQueue; }
    PrivateFiles& privateFiles() override { return fakePrivateFiles; }
    SettingsOpener& settingsOpener() override { return fakeSettingsOpener; }
};

} // namespace vesk::test
