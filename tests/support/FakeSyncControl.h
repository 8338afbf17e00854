#pragma once

#include "base/Notifications.h"
#include "links/exchange/LinkExchange.h"
#include "sync/SyncControl.h"

#include <QStringList>

#include <utility>

namespace orvelle::test {

/// A synchronisation whose state the test sets, and which notes what it is
/// asked. What takes time waits for finish().
class FakeSyncControl : public SyncControl
{
public:
    explicit FakeSyncControl(Notifications &notifications) : m_notifications(notifications) {}

    SyncStatus current;
    SyncPlace stored;
    std::optional<QString> givenPassword;
    QStringList asked;
    std::optional<QString> failure; ///< of what is asked next
    /// Why what is there cannot be read without a passphrase.
    std::optional<QString> encryptedThere;
    SyncResult result;
    std::optional<PreparedImport> existing;
    std::optional<HeldBackChange> held;
    bool on = false;
    bool guard = true;
    bool encrypted = false;

    void become(const SyncStatus &status)
    {
        current = status;
        emit m_notifications.syncStatusChanged();
    }
    /// Lets everything come to its end that was asked until now, and what that
    /// leads to.
    void finish()
    {
        while (!m_waiting.isEmpty())
            m_waiting.takeFirst()();
    }

    SyncPlace place() const override { return stored; }
    QString documentPath() const override { return stored.folder; }
    Result<SyncPlace, SyncPlaceRefusal> checkedPlace(const SyncPlace &place) const override
    {
        return validatedSyncPlace(place);
    }
    void testPlace(const SyncPlace &place, const std::optional<QString> &password, const Answer &answer) override
    {
        asked += QStringLiteral("test ") + rawValue(place.kind);
        givenPassword = password;
        m_waiting += [this, answer] { answer(failure); };
    }
    void setPlace(const SyncPlace &place, const std::optional<QString> &password, const Answer &answer) override
    {
        asked += QStringLiteral("place ") + rawValue(place.kind);
        givenPassword = password;
        m_waiting += [this, place, answer] {
            if (!failure)
                stored = place;
            answer(failure);
        };
    }
    void placeIsSettled(const std::function<void()> &done) override { done(); }
    SyncStatus status() const override { return current; }
    bool autoSyncEnabled() const override { return on; }
    void setAutoSyncEnabled(bool enabled) override
    {
        on = enabled;
        asked += enabled ? QStringLiteral("on") : QStringLiteral("off");
    }
    void syncNow(const CloudSync::Done &done) override { later("now", done); }
    void loadFromCloud(const CloudSync::Done &done) override { later("load", done); }
    void disable(const std::function<void()> &done) override
    {
        asked += QStringLiteral("disable");
        done();
    }
    void readExisting(const CloudSync::Found &found) override
    {
        asked += QStringLiteral("look");
        m_waiting += [this, found] {
            if (encryptedThere)
                become({SyncStatus::State::NeedsPassphrase, {}, {}});
            if (failure || encryptedThere)
                found(CloudSyncError{CloudSyncError::Kind::ReadFailed, failure ? *failure : *encryptedThere});
            else
                found(existing);
        };
    }
    std::optional<QString> useExisting(const PreparedImport &) override
    {
        asked += QStringLiteral("use");
        return failure;
    }
    void createNew(const CloudSync::Done &done) override { later("create", done); }
    bool isGuardEnabled() const override { return guard; }
    void setGuardEnabled(bool enabled) override { guard = enabled; }
    std::optional<HeldBackChange> heldBack() const override { return held; }
    void acceptHeldBack() override { asked += QStringLiteral("accept"); }
    void rejectHeldBack() override { asked += QStringLiteral("reject"); }
    bool isEncrypted() const override { return encrypted; }
    void setPassphrase(const QString &passphrase, const CloudSync::Done &done) override
    {
        later("passphrase " + passphrase.toUtf8(), done);
    }
    void removeEncryption(const CloudSync::Done &done) override { later("decrypt", done); }

private:
    void later(const QByteArray &what, const CloudSync::Done &done)
    {
        asked += QString::fromUtf8(what);
        m_waiting += [this, done] {
            if (failure)
                done(CloudSyncError{CloudSyncError::Kind::WriteFailed, *failure});
            else
                done(result);
        };
    }

    Notifications &m_notifications;
    QList<std::function<void()>> m_waiting;
};

} // namespace orvelle::test
