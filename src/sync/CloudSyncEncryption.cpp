#include "base/Text.h"
#include "platform/SecretStore.h"
#include "platform/UserDefaults.h"
#include "sync/CloudSyncPrivate.h"

using namespace Qt::StringLiterals;

namespace orvelle {

// The file stays encrypted as long as this machine was not told otherwise,
// also when a plain one takes its place: whoever can write to the place must
// not be able to make us send the next one in plain.

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

void CloudSync::Private::withCipher(const Then<Asked> &then)
{
    if (cipher) {
        then(std::nullopt);
        return;
    }
    using Found = Result<std::optional<QByteArray>, SecretError>;
    s.secrets.lookup(passphraseSecret(), fileName(), guarded([this, then](const Found &found) {
                         if (!found) {
                             SyncProblem why = problemOf(CloudError{CloudError::Kind::NoSecretStore});
                             why.needsPassphrase = true;
                             then(why);
                         } else if (!*found) {
                             then(problemOf(SyncDocumentError{SyncDocumentError::Kind::NeedsPassphrase,
                                                              u"encrypted, and no passphrase known"_s}));
                         } else {
                             cipher = std::make_shared<SyncCipher>(**found);
                             then(std::nullopt);
                         }
                     }));
}

void CloudSync::setPassphrase(const QString &passphrase, Done completion)
{
    Private &d = *m_d;
    const auto change = std::make_shared<Private::PassphraseChange>();
    change->passphrase = passphrase.toUtf8();
    change->cipher = std::make_shared<SyncCipher>(change->passphrase);
    change->done = completion;
    if (passphrase.isEmpty() || !d.available()) {
        const QString why = passphrase.isEmpty() ? text("cloudSync.document.wrongPassphrase"_text)
                                                 : cloudErrorText({CloudError::Kind::Unavailable, {}, {}});
        d.s.clock.after(std::chrono::milliseconds(0), this, [completion, why] {
            completion(CloudSyncError{CloudSyncError::Kind::ReadFailed, why});
        });
        return;
    }
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
        storePassphrase(change);
        return;
    }
    onWorker<std::optional<CipherError>>(
        [bytes = result->bytes, fresh = change->cipher, old = cipher]() -> std::optional<CipherError> {
            const auto opened = fresh->decrypt(bytes);
            if (opened || (old && old->decrypt(bytes)))
                return std::nullopt;
            return opened.error();
        },
        [this, change](const std::optional<CipherError> &refused) {
            if (!refused) {
                storePassphrase(change);
                return;
            }
            const auto kind = refused->kind == CipherError::Kind::WrongPassphrase
                                  ? SyncDocumentError::Kind::WrongPassphrase
                                  : SyncDocumentError::Kind::Undecodable;
            change->done(CloudSyncError{CloudSyncError::Kind::ReadFailed, syncDocumentErrorText({kind, {}})});
        });
}

void CloudSync::Private::storePassphrase(const ChangePtr &change)
{
    using Stored = Result<SecretStore::Nothing, SecretError>;
    s.secrets.store(passphraseSecret(), fileName(), text("cloudSync.passphraseLabel"_text), change->passphrase,
                    guarded([this, change](const Stored &stored) {
                        if (!stored) {
                            const CloudError error{CloudError::Kind::NoSecretStore, {}, {}};
                            change->done(CloudSyncError{CloudSyncError::Kind::WriteFailed, cloudErrorText(error)});
                            return;
                        }
                        store(encryptedBaseKey(), true);
                        previousCipher = std::exchange(cipher, change->cipher);
                        seen.reset();
                        writeAnew(change->done);
                    }));
}

void CloudSync::removeEncryption(Done completion)
{
    Private &d = *m_d;
    // The file is read with the passphrase once more, so that it can be
    // forgotten only after it was written in plain.
    d.store(encryptedBaseKey(), false);
    d.seen.reset();
    d.writeAnew([&d, completion](const Result<SyncResult, CloudSyncError> &result) {
        if (!result) {
            d.store(encryptedBaseKey(), true);
            completion(result);
            return;
        }
        using Removed = Result<SecretStore::Nothing, SecretError>;
        d.s.secrets.remove(passphraseSecret(), d.fileName(),
                           d.guarded([&d, completion, result](const Removed &removed) {
                               if (!removed)
                                   qCWarning(lcCloudSync).noquote()
                                       << "The passphrase stays in the keyring:" << removed.error().detail;
                               d.cipher.reset();
                               completion(result);
                           }));
    });
}

/// Writes the file although nothing in it changes.
void CloudSync::Private::writeAnew(Done done)
{
    if (upload || isCheckingSyncFile || isMerging) {
        constexpr std::chrono::milliseconds pause{100};
        s.clock.after(pause, q, [this, done] { writeAnew(done); });
        return;
    }
    const auto anew = std::make_shared<Upload>();
    anew->source = SyncSource::ManualSave;
    anew->forced = true;
    anew->done = done;
    cancelPending();
    beginUpload(anew);
}

} // namespace orvelle
