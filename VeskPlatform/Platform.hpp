#pragma once

#include "VeskPlatform/Bundle.hpp"

#include <memory>

namespace vesk {

class ApplicationAutomation;
class BundleInformation;
class Clock;
class CloudAccount;
class Consent;
class ContactStore;
class Desktop;
class Environment;
class EventStore;
class FileManager;
class FilePlaces;
class FileReader;
class HttpTransport;
class KeychainItems;
class LocaleSettings;
class MailScriptRunner;
class MediaFramework;
class MessagesScriptRunner;
class MonotonicClock;
class PdfDocuments;
class PrivateFiles;
class Processes;
class ProgramLauncher;
class PropertyListCoder;
class RandomSource;
class ReminderStore;
class SerialQueue;
class SettingsOpener;
class Sleeper;
class UserDefaults;
class WebEngine;

/// The set of ports. An accessor builds its adapter on first use and keeps it, so a run touches only what it needs.
/// Accessors are called on the main executor; each port's header says what its own verbs allow.
class Platform {
public:
    virtual ~Platform() = default;

    virtual const Bundle& mainBundle() = 0;
    virtual ApplicationAutomation& applicationAutomation() = 0;
    virtual BundleInformation& bundleInformation() = 0;
    virtual Clock& clock() = 0;
    virtual CloudAccount& cloudAccount() = 0;
    virtual Consent& consent() = 0;
    /// The desktop session that the environment names; its own accessors tell where there is none.
    virtual Desktop& desktop() = 0;
    virtual Environment& environment() = 0;
    /// A store of its own for one operation; it shows the calendars as they are from now on.
    virtual std::shared_ptr<EventStore> openEventStore() = 0;
    /// The same for to-dos.
    virtual std::shared_ptr<ReminderStore> openReminderStore() = 0;
    /// The same for contacts.
    virtual std::shared_ptr<ContactStore> openContactStore() = 0;
    virtual FileManager& fileManager() = 0;
    virtual FilePlaces& filePlaces() = 0;
    virtual FileReader& fileReader() = 0;
    virtual HttpTransport& httpTransport() = 0;
    /// The user's secrets, in the store that is there when they are first asked for.
    virtual KeychainItems& keychainItems() = 0;
    virtual LocaleSettings& localeSettings() = 0;
    virtual MailScriptRunner& mailScriptRunner() = 0;
    virtual MediaFramework& mediaFramework() = 0;
    virtual MessagesScriptRunner& messagesScriptRunner() = 0;
    virtual MonotonicClock& monotonicClock() = 0;
    /// The queue "app.veskhq.shell-debug-log".
    virtual SerialQueue& logQueue() = 0;
    virtual PdfDocuments& pdfDocuments() = 0;
    virtual PrivateFiles& privateFiles() = 0;
    virtual Processes& processes() = 0;
    virtual ProgramLauncher& programLauncher() = 0;
    virtual PropertyListCoder& propertyListCoder() = 0;
    virtual RandomSource& randomSource() = 0;
    virtual SettingsOpener& settingsOpener() = 0;
    virtual Sleeper& sleeper() = 0;
    virtual UserDefaults& userDefaults() = 0;
    virtual WebEngine& webEngine() = 0;
};

} // namespace vesk
