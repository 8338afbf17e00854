#pragma once

#include "sync/CloudSync.h"
#include "sync/ContainerSettings.h"

#include <functional>
#include <optional>

namespace orvelle {

/// All that the settings, the menu and the command line do with the
/// synchronisation: the place of the document together with the engine.
/// Changes of what is told here are announced by
/// Notifications::syncStatusChanged(). Main thread; callbacks run once, from
/// the event loop, and not after this object is gone.
class SyncControl
{
public:
    virtual ~SyncControl() = default;

    /// One sentence about what went wrong; absent when nothing did.
    using Answer = std::function<void(const std::optional<QString> &failure)>;

    virtual SyncPlace place() const = 0;
    /// Where the document is, for people to read; empty without a place.
    virtual QString documentPath() const = 0;
    /// What of a choice can be told at once, as presentSyncPlace() does.
    virtual Result<SyncPlace, SyncPlaceRefusal> checkedPlace(const SyncPlace &place) const = 0;
    /// Tries a place without taking it. Without a `password` the one in the
    /// keyring is used.
    virtual void testPlace(const SyncPlace &place, const std::optional<QString> &password, const Answer &answer) = 0;
    /// Takes a place: first the password goes into the keyring, then the
    /// choice into the settings. What is switched on goes on there. After a
    /// failure the place is the one it was. A folder need not be there now, as
    /// it may be one that is gone back to.
    virtual void setPlace(const SyncPlace &place, const std::optional<QString> &password, const Answer &answer) = 0;

    /// The choice is made: passwords of places that were tried or left, and
    /// that no place needs any more, go from the keyring.
    virtual void placeIsSettled(const std::function<void()> &done) = 0;

    virtual SyncStatus status() const = 0;
    virtual bool autoSyncEnabled() const = 0;
    virtual void setAutoSyncEnabled(bool enabled) = 0;
    /// Reads, merges and writes now.
    virtual void syncNow(const CloudSync::Done &done) = 0;
    /// Replaces what is here by the document; a snapshot is kept.
    virtual void loadFromCloud(const CloudSync::Done &done) = 0;
    /// Off, and everything forgotten that was noted of the document, which
    /// stays where it is, as does the choice of the place; but its password
    /// goes from the keyring.
    virtual void disable(const std::function<void()> &done) = 0;

    /// The document that is there already, absent when there is none.
    virtual void readExisting(const CloudSync::Found &found) = 0;
    /// Makes the document that was found what is here; a snapshot is kept.
    virtual std::optional<QString> useExisting(const PreparedImport &existing) = 0;
    /// Makes what is here the document. The one that was there is kept as a
    /// snapshot.
    virtual void createNew(const CloudSync::Done &done) = 0;

    virtual bool isGuardEnabled() const = 0;
    virtual void setGuardEnabled(bool enabled) = 0;
    virtual std::optional<HeldBackChange> heldBack() const = 0;
    virtual void acceptHeldBack() = 0;
    virtual void rejectHeldBack() = 0;

    virtual bool isEncrypted() const = 0;
    virtual void setPassphrase(const QString &passphrase, const CloudSync::Done &done) = 0;
    virtual void removeEncryption(const CloudSync::Done &done) = 0;
};

/// What the menu says while nothing goes on without the user; empty otherwise.
QString syncNeedsUserTitle(const SyncStatus &status);

} // namespace orvelle
