#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QMutex>
#include <QString>

#include <memory>

namespace orvelle {

struct CipherError {
    enum class Kind {
        WrongPassphrase, ///< or the file was changed by somebody without it
        Damaged,         ///< too short, or numbers out of range
        NewerFormat,
        Failed, ///< no memory for the key
    };
    Kind kind = Kind::Damaged;
};

/// Whether these bytes are a file that SyncCipher wrote, of any version.
bool isEncryptedSyncFile(QByteArrayView bytes);

/// Encrypts the shared file with a passphrase: the key comes from it by
/// Argon2id (RFC 9106) with a salt of the file, the content is sealed with
/// XChaCha20-Poly1305, the header being authenticated too. Deriving a key
/// takes some tenths of a second and 64 MiB; keys are remembered by salt, so
/// that this is done once for each file. Any thread.
class SyncCipher
{
public:
    explicit SyncCipher(const QByteArray &passphrase);
    ~SyncCipher();
    SyncCipher(const SyncCipher &) = delete;
    SyncCipher &operator=(const SyncCipher &) = delete;

    /// With the salt of the last file that was read, else with a fresh one.
    Result<QByteArray, CipherError> encrypt(const QByteArray &document);
    Result<QByteArray, CipherError> decrypt(const QByteArray &file);

private:
    struct Keys;
    QMutex m_mutex;
    std::unique_ptr<Keys> m_keys;
};

} // namespace orvelle
