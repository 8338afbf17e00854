#include "app/SyncServices.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "links/LinkStore.h"
#include "links/exchange/LinkExchange.h"
#include "platform/Clock.h"
#include "platform/SecretStore.h"
#include "platform/UserDefaults.h"
#include "platform/freedesktop/folder/FolderContainer.h"
#include "platform/freedesktop/webdav/WebDavContainer.h"
#include "services/DebugModeManager.h"

#include <QLoggingCategory>
#include <QPointer>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcSyncServices, "SyncServices", QtInfoMsg)

using namespace std::chrono_literals;

QString passwordKey()
{
    return QStringLiteral("webdav");
}

WebDavSettings webDavSettings(const SyncPlace &place)
{
    WebDavSettings settings;
    settings.folderUrl = place.server;
    settings.user = place.user;
    return settings;
}

/// Under which the keyring has the password; empty for a place without one.
QString accountOf(const SyncPlace &place)
{
    return place.kind == SyncPlace::Kind::WebDav ? WebDavContainer::secretAccount(webDavSettings(place)) : QString();
}

QString noKeyringText(const SecretError &error)
{
    return cloudErrorText({CloudError::Kind::NoSecretStore, error.detail});
}

} // namespace

/// The one password that was typed and is only tried.
class SyncServices::TypedSecret : public SecretStore
{
public:
    TypedSecret(Clock &clock, const QString &password) : m_clock(clock), m_password(password.toUtf8()) {}

    void lookup(const QString &, const QString &,
                std::function<void(const Result<std::optional<QByteArray>, SecretError> &)> done) override
    {
        m_clock.after(0ms, &m_owner, [done, password = m_password] { done(std::optional(password)); });
    }
    void store(const QString &, const QString &, const QString &, const QByteArray &,
               std::function<void(const Result<Nothing, SecretError> &)> done) override
    {
        refuse(done);
    }
    void remove(const QString &, const QString &,
                std::function<void(const Result<Nothing, SecretError> &)> done) override
    {
        refuse(done);
    }

private:
    void refuse(const std::function<void(const Result<Nothing, SecretError> &)> &done)
    {
        m_clock.after(0ms, &m_owner, [done] { done(SecretError{SecretError::Kind::Unavailable}); });
    }

    Clock &m_clock;
    QByteArray m_password;
    QObject m_owner; ///< what is under way ends with this
};

/// A place that is being tried. The container goes before what it uses.
struct SyncServices::Trial {
    std::unique_ptr<SecretStore> secrets;
    std::unique_ptr<CloudContainer> container;
};

SyncServices::SyncServices(const Services &services, QObject *parent)
    : QObject(parent),
      m_services(services),
      m_settings(services.engine.defaults, services.engine.debugMode),
      m_engine(services.engine)
{
    connect(&services.engine.notifications, &Notifications::debugModeChanged, this, &SyncServices::changeMode);
    connect(&services.engine.defaults, &UserDefaults::changedExternally, this, [this](const QStringList &keys) {
        if (m_isOpen && m_settings.concerns(keys))
            remake();
    });
}

SyncServices::~SyncServices()
{
    m_engine.setContainer(nullptr);
}

std::unique_ptr<CloudContainer> SyncServices::makeContainer(const SyncPlace &place, SecretStore &secrets) const
{
    Clock &clock = m_services.engine.clock;
    switch (place.kind) {
    case SyncPlace::Kind::None:
        return nullptr;
    case SyncPlace::Kind::Folder:
        return std::make_unique<FolderContainer>(place.folder, m_services.machineName, clock);
    case SyncPlace::Kind::WebDav:
        return std::make_unique<WebDavContainer>(webDavSettings(place), m_services.http, secrets, clock,
                                                 m_services.cacheFolder);
    }
    Q_UNREACHABLE();
}

void SyncServices::open()
{
    if (!m_isOpen)
        remake();
}

void SyncServices::remake()
{
    m_isOpen = true;
    const SyncPlace where = place();
    std::unique_ptr<CloudContainer> next = makeContainer(where, m_services.engine.secrets);
    qCInfo(lcSyncServices, "The shared document's place is of the kind %s", qPrintable(rawValue(where.kind)));
    m_engine.setContainer(next.get());
    m_container = std::move(next);
}

void SyncServices::changeMode()
{
    if (m_isOpen)
        remake();
    m_engine.reloadForModeChange();
}

QString SyncServices::documentPath() const
{
    if (m_container)
        return m_engine.resolvedSyncFilePath();
    const SyncPlace where = place();
    return where.kind == SyncPlace::Kind::None
               ? QString()
               : makeContainer(where, m_services.engine.secrets)->displayPath(m_engine.syncFileName());
}

Result<SyncPlace, SyncPlaceRefusal> SyncServices::checkedPlace(const SyncPlace &place) const
{
    return presentSyncPlace(place, m_services.volumes);
}

void SyncServices::testPlace(const SyncPlace &place, const std::optional<QString> &password, const Answer &answer)
{
    const auto valid = checkedPlace(place);
    if (!valid || valid->kind == SyncPlace::Kind::None) {
        const SyncPlaceRefusal why = valid ? SyncPlaceRefusal::NoFolder : valid.error();
        m_services.engine.clock.after(0ms, this, [answer, why] { answer(syncPlaceRefusalText(why)); });
        return;
    }
    Trial *trial = m_trials.emplace_back(std::make_unique<Trial>()).get();
    if (password)
        trial->secrets = std::make_unique<TypedSecret>(m_services.engine.clock, *password);
    trial->container = makeContainer(*valid, password ? *trial->secrets : m_services.engine.secrets);
    trial->container->test([this, trial, answer](const Result<QString, CloudError> &result) {
        // Not from inside what calls.
        m_services.engine.clock.after(0ms, this, [this, trial] {
            std::erase_if(m_trials, [trial](const auto &each) { return each.get() == trial; });
        });
        if (result)
            qCInfo(lcSyncServices).noquote() << "The place works:" << *result;
        else
            qCInfo(lcSyncServices).noquote() << "The place does not work:" << result.error().detail;
        answer(result ? std::nullopt : std::optional(cloudErrorText(result.error())));
    });
}

void SyncServices::setPlace(const SyncPlace &place, const std::optional<QString> &password, const Answer &answer)
{
    const auto valid = validatedSyncPlace(place);
    if (!valid) {
        m_services.engine.clock.after(0ms, this, [answer, why = valid.error()] { answer(syncPlaceRefusalText(why)); });
        return;
    }
    if (!password || valid->kind != SyncPlace::Kind::WebDav) {
        m_services.engine.clock.after(0ms, this, [this, place = *valid, answer] { takePlace(place, answer); });
        return;
    }
    notePassword(*valid);
    m_services.engine.secrets.store(passwordKey(), accountOf(*valid), text("cloudSync.keyringLabel"_text),
                                    password->toUtf8(),
                                    [self = QPointer<SyncServices>(this), place = *valid,
                                     answer](const Result<SecretStore::Nothing, SecretError> &stored) {
                                        if (!self)
                                            return;
                                        if (stored)
                                            self->takePlace(place, answer);
                                        else
                                            answer(noKeyringText(stored.error()));
                                    });
}

void SyncServices::takePlace(const SyncPlace &place, const Answer &answer)
{
    // What was noted of one document says nothing about another.
    if (place != m_settings.place()) {
        notePassword(m_settings.place());
        m_engine.disableCloudSync();
        if (!m_settings.setPlace(place))
            return answer(text("cloudSync.placeNotStored"_text));
    }
    remake();
    answer(std::nullopt);
}

void SyncServices::notePassword(const SyncPlace &place)
{
    m_passwords += accountOf(place);
}

void SyncServices::placeIsSettled(const std::function<void()> &done)
{
    m_passwords.removeAll(accountOf(place()));
    m_passwords.removeDuplicates();
    removeUnneeded(std::exchange(m_passwords, {}), done);
}

void SyncServices::disable(const std::function<void()> &done)
{
    m_engine.disableCloudSync();
    if (m_isOpen)
        remake(); // what was open knows the password
    removeUnneeded({accountOf(place())}, done);
}

/// One after the other; the last one tells.
void SyncServices::removeUnneeded(QStringList accounts, const std::function<void()> &done)
{
    accounts.removeAll(accountOf(m_settings.placeOfOtherMode()));
    accounts.removeAll(QString());
    if (accounts.isEmpty())
        return m_services.engine.clock.after(0ms, this, done);
    const QString account = accounts.takeFirst(); // before the rest is handed on
    using Removed = Result<SecretStore::Nothing, SecretError>;
    m_services.engine.secrets.remove(
        passwordKey(), account, [self = QPointer<SyncServices>(this), accounts, done](const Removed &removed) {
            if (!removed)
                qCWarning(lcSyncServices).noquote() << "A password stays in the keyring:" << removed.error().detail;
            if (self)
                self->removeUnneeded(accounts, done);
        });
}

void SyncServices::setAutoSyncEnabled(bool enabled)
{
    open();
    m_engine.setAutoSyncEnabled(enabled);
}

void SyncServices::syncNow(const CloudSync::Done &done)
{
    open();
    m_engine.saveToCloud(done);
}

void SyncServices::loadFromCloud(const CloudSync::Done &done)
{
    open();
    m_engine.loadFromCloud(done);
}

void SyncServices::readExisting(const CloudSync::Found &found)
{
    open();
    m_engine.readForConfigure(found);
}

std::optional<QString> SyncServices::useExisting(const PreparedImport &existing)
{
    const auto imported = m_services.engine.exchange.importPrepared(existing, ImportMode::Replace);
    return imported ? std::nullopt : std::optional(importErrorText(imported.error()));
}

void SyncServices::createNew(const CloudSync::Done &done)
{
    open();
    m_engine.beginAnew(done);
}

void SyncServices::setPassphrase(const QString &passphrase, const CloudSync::Done &done)
{
    open();
    m_engine.setPassphrase(passphrase, done);
}

void SyncServices::removeEncryption(const CloudSync::Done &done)
{
    open();
    m_engine.removeEncryption(done);
}

} // namespace orvelle
