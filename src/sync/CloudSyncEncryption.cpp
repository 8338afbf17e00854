#include "base/Text.h"
#include "platform/SecretStore.h"
#include "platform/UserDefaults.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

// The file stays encrypted as long as this machine was not told otherwise,
// also when a plain one takes its place: whoever can write to the place must
// not be able to make us send the next one in plain.

namespace {

/// Asking again would show the user the prompt that was cancelled, so nothing
/// but the user asks before the pause is over.
SyncProblem noPassphrase(const SecretError &error)
{
    constexpr std::chrono::hours afterRefusal{1};
    SyncProblem why = problemOf(CloudError{CloudError::Kind::NoSecretStore, error.detail, {}});
    why.needsPassphrase = true;
    if (error.kind == SecretError::Kind::Locked)
        why.retryAfter = afterRefusal;
    return why;
}

CloudSyncError notStored()
{
    return {CloudSyncError::Kind::WriteFailed, text("cloudSync.encryptionNotStored"_text)};
}

CloudSyncError noKeyring()
{
    return {CloudSyncError::Kind::WriteFailed, cloudErrorText({CloudError::Kind::NoSecretStore, {}, {}})};
}

} // namespace

struct CloudSync::Private::PassphraseChange {
    std::shared_ptr<SyncCipher> cipher;
    QByteArray passphrase;
    Done done;
};

bool CloudSync::isEncrypted() const
{
    return m_d->encryptionOn();
}

bool CloudSync::Private::encryptionOn() const
{
    return s.defaults.get<bool>(key(encryptedBaseKey())).value_or(false);
}

/// Also when the settings do not know it, as after they were lost: the keyring
/// opened what is there, and nothing of it is to be sent in plain.
bool CloudSync::Private::seals(const Upload &begun) const
{
    return !begun.unseals && (encryptionOn() || (begun.remote && begun.remote->encrypted));
}

void CloudSync::Private::noteSealed()
{
    if (!encryptionOn())
        store(encryptedBaseKey(), true);
}

void CloudSync::Private::withCipher(const Then<Asked> &then)
{
    if (cipher) {
        then(std::nullopt);
        return;
    }
    using Found = Result<std::optional<QByteArray>, SecretError>;
    s.secrets.lookup(passphraseSecret(), fileName(), guarded([this, then](const Found &found) {
                         if (!found) {
                             then(noPassphrase(found.error()));
                         } else if (!*found) {
                             then(problemOf(SyncDocumentError{SyncDocumentError::Kind::NeedsPassphrase,
                                                              u"encrypted, and no passphrase known"_s}));
                         } else {
                             cipher = std::make_shared<SyncCipher>(**found);
                             then(std::nullopt);
                         }
                     }));
}

void CloudSync::setPassphrase(const QString &passphrase, const Done &completion)
{
    Private &d = *m_d;
    const auto change = std::make_shared<Private::PassphraseChange>();
    change->passphrase = passphrase.toUtf8();
    change->cipher = std::make_shared<SyncCipher>(change->passphrase);
    if (passphrase.isEmpty() || !d.container) {
        const QString why = passphrase.isEmpty() ? text("cloudSync.document.wrongPassphrase"_text)
                                                 : cloudErrorText({CloudError::Kind::Unavailable, {}, {}});
        d.s.clock.after(std::chrono::milliseconds(0), this, [completion, why] {
            completion(CloudSyncError{CloudSyncError::Kind::ReadFailed, why});
        });
        return;
    }
    change->done = d.owed(completion);
    d.container->read(d.fileName(), d.guarded([&d, change](const Result<CloudFile, CloudError> &result) {
        d.passphraseRead(change, result);
    }));
}

/// A file that is encrypted already must open with the new passphrase, or with
/// the one known here, which is then replaced.
void CloudSync::Private::passphraseRead(const ChangePtr &change, const Result<CloudFile, CloudError> &result)
{
    if (!result && result.error().kind != CloudError::Kind::Missing) {
        change->done(CloudSyncError{CloudSyncError::Kind::ReadFailed, cloudErrorText(result.error())});
        return;
    }
    if (!result || !isEncryptedSyncFile(result->bytes)) {
        adoptPassphrase(change, false);
        return;
    }
    withCipher([this, change, bytes = result->bytes](const Asked &) {
        withNextCipher([this, change, bytes](const Asked &) { tryPassphrase(change, bytes); });
    });
}

void CloudSync::Private::tryPassphrase(const ChangePtr &change, const QByteArray &encrypted)
{
    struct Opened {
        bool byFresh = false;
        bool byKnown = false;
        CipherError::Kind why = {};
    };
    onWorker<Opened>(
        [encrypted, fresh = change->cipher, old = cipher, other = next ? next->cipher : nullptr]() -> Opened {
            const auto opened = fresh->decrypt(encrypted);
            if (opened)
                return {.byFresh = true};
            return {false, (old && old->decrypt(encrypted)) || (other && other->decrypt(encrypted)),
                    opened.error().kind};
        },
        [this, change](const Opened &opened) {
            if (opened.byFresh)
                return adoptPassphrase(change, true);
            if (opened.byKnown)
                return changePassphrase(change);
            const auto kind = opened.why == CipherError::Kind::WrongPassphrase
                                  ? SyncDocumentError::Kind::WrongPassphrase
                                  : SyncDocumentError::Kind::Undecodable;
            change->done(CloudSyncError{CloudSyncError::Kind::ReadFailed, syncDocumentErrorText({kind, {}})});
        });
}

void CloudSync::Private::keepSecret(const QString &secret, const QByteArray &passphrase, const Then<bool> &then)
{
    using Stored = Result<SecretStore::Nothing, SecretError>;
    s.secrets.store(secret, fileName(), text("cloudSync.passphraseLabel"_text), passphrase,
                    guarded([then](const Stored &stored) {
                        if (!stored)
                            qCWarning(lcCloudSync).noquote() << "A passphrase was not stored:" << stored.error().detail;
                        then(stored.hasValue());
                    }));
}

void CloudSync::Private::adoptPassphrase(const ChangePtr &change, bool isSealed)
{
    keepSecret(passphraseSecret(), change->passphrase, [this, change, isSealed](bool stored) {
        if (!stored)
            return change->done(noKeyring());
        if (!store(encryptedBaseKey(), true))
            return change->done(notStored());
        cipher = change->cipher;
        leftCopies.clear(); // some may be read now
        dropNext();
        seen.reset();
        if (!isSealed || enabled())
            return writeAnew(std::make_shared<Upload>(), change->done);
        // Whether the two are to be merged was not decided yet.
        setProblem(std::nullopt);
        announce();
        change->done(SyncResult{});
    });
}

/// The file is to be readable also when this ends half-way, with an answer
/// that never comes or with the program: the keyring has both passphrases
/// until it is known which one the file has.
void CloudSync::Private::changePassphrase(const ChangePtr &change)
{
    keepSecret(nextPassphraseSecret(), change->passphrase, [this, change](bool stored) {
        if (!stored)
            return change->done(noKeyring());
        if (!store(encryptedBaseKey(), true))
            return change->done(notStored());
        next = NextCipher{change->cipher, change->passphrase};
        nextLookedUp = true;
        seen.reset();
        const auto anew = std::make_shared<Upload>();
        anew->cipher = change->cipher;
        writeAnew(anew, [this, change](const Result<SyncResult, CloudSyncError> &result) {
            if (!result)
                return change->done(result);
            promoteNext([change, result] { change->done(result); });
        });
    });
}

void CloudSync::Private::withNextCipher(const Then<Asked> &then)
{
    if (nextLookedUp) {
        then(std::nullopt);
        return;
    }
    using Found = Result<std::optional<QByteArray>, SecretError>;
    s.secrets.lookup(nextPassphraseSecret(), fileName(), guarded([this, then](const Found &found) {
                         nextLookedUp = found.hasValue();
                         if (found && *found)
                             next = NextCipher{std::make_shared<SyncCipher>(**found), **found};
                         then(found ? std::nullopt : Asked(noPassphrase(found.error())));
                     }));
}

/// The file turned out to have the new passphrase.
void CloudSync::Private::promoteNext(const std::function<void()> &then)
{
    if (!next) {
        then();
        return;
    }
    cipher = next->cipher;
    keepSecret(passphraseSecret(), next->passphrase, [this, then](bool stored) {
        if (stored) // else the next start finds it where it is
            dropNext();
        then();
    });
}

/// After a write that was none of a change.
void CloudSync::Private::settleNext()
{
    if (next && next->cipher == cipher)
        promoteNext([] {});
    else if (next)
        dropNext();
}

void CloudSync::Private::dropNext()
{
    next.reset();
    s.secrets.remove(nextPassphraseSecret(), fileName(), [](const auto &) {});
}

void CloudSync::Private::forgetCiphers()
{
    cipher.reset();
    next.reset();
    nextLookedUp = false;
    leftCopies.clear();
}

void CloudSync::removeEncryption(const Done &completion)
{
    Private &d = *m_d;
    // The file is read with the passphrase once more, so that it can be
    // forgotten only after it was written in plain.
    const auto plain = std::make_shared<Private::Upload>();
    plain->unseals = true;
    d.seen.reset();
    d.writeAnew(plain, [&d, answer = d.owed(completion)](const Result<SyncResult, CloudSyncError> &result) {
        if (!result) {
            answer(result);
            return;
        }
        if (!d.store(encryptedBaseKey(), false)) // it is sealed again by the next upload, which needs the passphrase
            return answer(notStored());
        using Removed = Result<SecretStore::Nothing, SecretError>;
        d.s.secrets.remove(passphraseSecret(), d.fileName(), d.guarded([&d, answer, result](const Removed &removed) {
            if (!removed)
                qCWarning(lcCloudSync).noquote() << "The passphrase stays in the keyring:" << removed.error().detail;
            d.dropNext();
            d.cipher.reset();
            answer(result);
        }));
    });
}

/// Writes the file although nothing in it changes.
void CloudSync::Private::writeAnew(const UploadPtr &anew, const Done &done)
{
    anew->forced = true;
    anew->done = owed(done);
    saveByHand(anew);
}

} // namespace orvelle
