#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QMutex>

#include <memory>

namespace orvelle {

struct CipherError {
    enum class Kind {
        WrongPassphrase,
        Damaged, ///< cut short, altered, or numbers out of range
        NewerFormat,
        Failed, ///< no memory for the key, or no randomness
    };
    Kind kind = Kind::Damaged;
};

/// Whether these bytes are a file that SyncCipher wrote, of any version and
/// however little of it is left.
bool isEncryptedSyncFile(QByteArrayView bytes);

/// Encrypts the shared file with a passphrase: the key comes from it by
/// Argon2id (RFC 9106) with a salt of the file, the content is sealed with
/// XChaCha20-Poly1305, the header being authenticated too. The layout is in
/// docs/synchronisation.md. Deriving a key takes some tenths of a second and
/// 64 MiB; keys are remembered by salt, so that this is done once for each
/// file. What a file's header may ask for is bounded. Any thread; calls wait
/// for each other. Passphrase and keys are wiped from memory at the end.
class SyncCipher
{
public:
    /// UTF-8. Texts that differ only in how accents are composed are the same
    /// passphrase, as keyboards differ in that.
    explicit SyncCipher(const QByteArray &passphrase);
    ~SyncCipher();
    SyncCipher(const SyncCipher &) = delete;
    SyncCipher &operator=(const SyncCipher &) = delete;

    /// With the salt of the last file that was decrypted, else with a fresh
    /// one; with a nonce of its own each time.
    Result<QByteArray, CipherError> encrypt(const QByteArray &document);
    /// The document as it went in, or an error, never anything else.
    Result<QByteArray, CipherError> decrypt(const QByteArray &file);

private:
    struct Keys;
    QMutex m_mutex;
    std::unique_ptr<Keys> m_keys;
};

} // namespace orvelle
