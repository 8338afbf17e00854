#pragma once

#include "sync/SyncControl.h"

#include <QObject>

#include <memory>
#include <vector>

namespace orvelle {

class HttpClient;
class Volumes;

/// The synchronisation with the place that the settings name: makes the
/// container, and another one when the choice or the mode changes. Main
/// thread.
class SyncServices : public QObject, public SyncControl
{
    Q_OBJECT

public:
    /// All of it outlives this.
    struct Services {
        CloudSync::Services engine;
        HttpClient &http;
        const Volumes &volumes;
        QString cacheFolder; ///< for copies of what servers hold
        QString machineName; ///< told to other machines
    };
    explicit SyncServices(const Services &services, QObject *parent = nullptr);
    ~SyncServices() override;

    /// Takes up the stored place, and with it the monitoring when that is
    /// switched on. Until then, or the first call that needs the place,
    /// nothing is opened.
    void open();

    CloudSync &engine() { return m_engine; }

    SyncPlace place() const override { return m_settings.place(); }
    QString documentPath() const override;
    Result<SyncPlace, SyncPlaceRefusal> checkedPlace(const SyncPlace &place) const override;
    void testPlace(const SyncPlace &place, const std::optional<QString> &password, const Answer &answer) override;
    void setPlace(const SyncPlace &place, const std::optional<QString> &password, const Answer &answer) override;

    void placeIsSettled(const std::function<void()> &done) override;

    SyncStatus status() const override { return m_engine.status(); }
    bool autoSyncEnabled() const override { return m_engine.autoSyncEnabled(); }
    void setAutoSyncEnabled(bool enabled) override;
    void syncNow(const CloudSync::Done &done) override;
    void loadFromCloud(const CloudSync::Done &done) override;
    void disable(const std::function<void()> &done) override;

    void readExisting(const CloudSync::Found &found) override;
    std::optional<QString> useExisting(const PreparedImport &existing) override;
    void createNew(const CloudSync::Done &done) override;

    bool isGuardEnabled() const override { return m_engine.isGuardEnabled(); }
    void setGuardEnabled(bool enabled) override { m_engine.setGuardEnabled(enabled); }
    std::optional<HeldBackChange> heldBack() const override { return m_engine.heldBack(); }
    void acceptHeldBack() override { m_engine.acceptHeldBack(); }
    void rejectHeldBack() override { m_engine.rejectHeldBack(); }

    bool isEncrypted() const override { return m_engine.isEncrypted(); }
    void setPassphrase(const QString &passphrase, const CloudSync::Done &done) override;
    void removeEncryption(const CloudSync::Done &done) override;

private:
    class TypedSecret;
    struct Trial;

    std::unique_ptr<CloudContainer> makeContainer(const SyncPlace &place, SecretStore &secrets) const;
    void remake();
    void changeMode();
    void takePlace(const SyncPlace &place, const Answer &answer);
    void notePassword(const SyncPlace &place);
    void removeUnneeded(QStringList accounts, const std::function<void()> &done);

    Services m_services;
    ContainerSettings m_settings;
    CloudSync m_engine;
    std::unique_ptr<CloudContainer> m_container;
    std::vector<std::unique_ptr<Trial>> m_trials; ///< those that are not answered
    QStringList m_passwords;                      ///< accounts whose passwords may be needed no more
    bool m_isOpen = false;
};

} // namespace orvelle
