#include "sync/SyncCipher.h"

#include <QCryptographicHash>
#include <QString>
#include <QtEndian>

#include <sodium.h>

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace orvelle {

namespace {

constexpr QByteArrayView magic("orvelle-sync-encrypted\n");
constexpr quint8 formatVersion = 1;

// What is written: the second choice of RFC 9106, for where a gigabyte is not
// to be had. What is read lies between these bounds, so that a file cannot
// take all the memory or hours.
constexpr quint32 usualPasses = 3;
constexpr quint32 maxPasses = 16;
constexpr quint32 usualMemoryKiB = 64 * 1024;
constexpr quint32 minMemoryKiB = 8 * 1024;
constexpr quint32 maxMemoryKiB = 512 * 1024;
constexpr std::size_t maxRememberedKeys = 4;

// The header, by bytes.
constexpr qsizetype versionAt = magic.size();
constexpr qsizetype passesAt = versionAt + 1;
constexpr qsizetype memoryAt = passesAt + 4;
constexpr qsizetype saltAt = memoryAt + 4;
constexpr qsizetype keyCheckAt = saltAt + crypto_pwhash_SALTBYTES;
constexpr qsizetype keyCheckBytes = 16;
constexpr qsizetype sumAt = keyCheckAt + keyCheckBytes;
constexpr qsizetype sumBytes = 16;
constexpr qsizetype nonceAt = sumAt + sumBytes;
constexpr qsizetype headerBytes = nonceAt + crypto_aead_xchacha20poly1305_ietf_NPUBBYTES;
constexpr qsizetype sealBytes = crypto_aead_xchacha20poly1305_ietf_ABYTES;

// Subkeys of the derived key, by number.
constexpr char subkeyContext[] = "orvlsync";
constexpr quint64 contentSubkey = 1;
constexpr quint64 checkSubkey = 2;

const unsigned char *bytesOf(QByteArrayView bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.data());
}

unsigned char *bytesOf(QByteArray &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

/// What a key is made of besides the passphrase.
struct Derivation {
    quint32 passes = usualPasses;
    quint32 memoryKiB = usualMemoryKiB;
    QByteArray salt;
    friend bool operator==(const Derivation &, const Derivation &) = default;

    bool isUsual() const { return passes == usualPasses && memoryKiB == usualMemoryKiB; }
    bool isBounded() const
    {
        return passes >= 1 && passes <= maxPasses && memoryKiB >= minMemoryKiB && memoryKiB <= maxMemoryKiB;
    }
};

Derivation freshDerivation()
{
    Derivation fresh;
    fresh.salt.resize(crypto_pwhash_SALTBYTES);
    randombytes_buf(fresh.salt.data(), crypto_pwhash_SALTBYTES);
    return fresh;
}

struct Key {
    Derivation derivation;
    std::array<unsigned char, crypto_aead_xchacha20poly1305_ietf_KEYBYTES> content{};
    QByteArray check; ///< tells a wrong passphrase from a damaged file
};

QByteArray sumOf(QByteArrayView header)
{
    return QCryptographicHash::hash(header.first(sumAt).toByteArray(), QCryptographicHash::Sha256).first(sumBytes);
}

QByteArray headerFor(const Key &key)
{
    QByteArray header(headerBytes, '\0');
    header.replace(0, magic.size(), magic.toByteArray());
    header[versionAt] = static_cast<char>(formatVersion);
    qToLittleEndian(key.derivation.passes, header.data() + passesAt);
    qToLittleEndian(key.derivation.memoryKiB, header.data() + memoryAt);
    header.replace(saltAt, key.derivation.salt.size(), key.derivation.salt);
    header.replace(keyCheckAt, keyCheckBytes, key.check);
    header.replace(sumAt, sumBytes, sumOf(header));
    randombytes_buf(header.data() + nonceAt, crypto_aead_xchacha20poly1305_ietf_NPUBBYTES);
    return header;
}

Result<Derivation, CipherError> readHeader(QByteArrayView file)
{
    using Kind = CipherError::Kind;
    if (!isEncryptedSyncFile(file) || file.size() <= versionAt)
        return CipherError{Kind::Damaged};
    if (static_cast<quint8>(file[versionAt]) > formatVersion)
        return CipherError{Kind::NewerFormat};
    if (static_cast<quint8>(file[versionAt]) != formatVersion || file.size() < headerBytes + sealBytes)
        return CipherError{Kind::Damaged};
    const Derivation derivation{qFromLittleEndian<quint32>(file.data() + passesAt),
                                qFromLittleEndian<quint32>(file.data() + memoryAt),
                                file.sliced(saltAt, crypto_pwhash_SALTBYTES).toByteArray()};
    if (sumOf(file) != file.sliced(sumAt, sumBytes) || !derivation.isBounded())
        return CipherError{Kind::Damaged};
    return derivation;
}

} // namespace

struct SyncCipher::Keys {
    bool isReady = false;
    QByteArray passphrase;
    std::vector<Key> known; ///< the last used one at the end
    std::optional<Derivation> last;

    ~Keys()
    {
        sodium_memzero(passphrase.data(), static_cast<std::size_t>(passphrase.size()));
        for (Key &key : known)
            wipe(key);
    }

    static void wipe(Key &key) { sodium_memzero(key.content.data(), key.content.size()); }

    /// Null when it could not be made.
    const Key *keyFor(const Derivation &derivation)
    {
        const auto found = std::find_if(known.begin(), known.end(),
                                        [&derivation](const Key &key) { return key.derivation == derivation; });
        if (found != known.end()) {
            std::rotate(found, found + 1, known.end());
            return &known.back();
        }
        Key key{derivation, {}, QByteArray(keyCheckBytes, '\0')};
        if (!derive(key))
            return nullptr;
        if (known.size() == maxRememberedKeys) {
            wipe(known.front());
            known.erase(known.begin());
        }
        known.reserve(maxRememberedKeys); // no copies are left behind
        known.push_back(key);
        wipe(key);
        return &known.back();
    }

    bool derive(Key &key) const
    {
        std::array<unsigned char, crypto_kdf_KEYBYTES> main{};
        const int failed =
            crypto_pwhash(main.data(), main.size(), passphrase.constData(), static_cast<quint64>(passphrase.size()),
                          bytesOf(QByteArrayView(key.derivation.salt)), key.derivation.passes,
                          std::size_t(key.derivation.memoryKiB) * 1024, crypto_pwhash_ALG_ARGON2ID13);
        if (!failed) {
            crypto_kdf_derive_from_key(key.content.data(), key.content.size(), contentSubkey, subkeyContext,
                                       main.data());
            crypto_kdf_derive_from_key(bytesOf(key.check), keyCheckBytes, checkSubkey, subkeyContext, main.data());
        }
        sodium_memzero(main.data(), main.size());
        return !failed;
    }
};

bool isEncryptedSyncFile(QByteArrayView bytes)
{
    return bytes.startsWith(magic);
}

SyncCipher::SyncCipher(const QByteArray &passphrase) : m_keys(std::make_unique<Keys>())
{
    m_keys->isReady = sodium_init() >= 0;
    m_keys->passphrase = QString::fromUtf8(passphrase).normalized(QString::NormalizationForm_C).toUtf8();
}

SyncCipher::~SyncCipher() = default;

Result<QByteArray, CipherError> SyncCipher::encrypt(const QByteArray &document)
{
    const QMutexLocker lock(&m_mutex);
    if (!m_keys->isReady)
        return CipherError{CipherError::Kind::Failed};
    if (!m_keys->last)
        m_keys->last = freshDerivation();
    const Key *key = m_keys->keyFor(*m_keys->last);
    if (!key)
        return CipherError{CipherError::Kind::Failed};
    QByteArray file = headerFor(*key);
    file.resize(headerBytes + document.size() + sealBytes);
    unsigned char *bytes = bytesOf(file);
    crypto_aead_xchacha20poly1305_ietf_encrypt(bytes + headerBytes, nullptr, bytesOf(QByteArrayView(document)),
                                               static_cast<quint64>(document.size()), bytes, headerBytes, nullptr,
                                               bytes + nonceAt, key->content.data());
    return file;
}

Result<QByteArray, CipherError> SyncCipher::decrypt(const QByteArray &file)
{
    const QMutexLocker lock(&m_mutex);
    const auto derivation = readHeader(file);
    if (!derivation)
        return derivation.error();
    const Key *key = m_keys->isReady ? m_keys->keyFor(*derivation) : nullptr;
    if (!key)
        return CipherError{CipherError::Kind::Failed};
    const unsigned char *bytes = bytesOf(QByteArrayView(file));
    if (sodium_memcmp(bytes + keyCheckAt, key->check.constData(), keyCheckBytes) != 0)
        return CipherError{CipherError::Kind::WrongPassphrase};
    QByteArray document(file.size() - headerBytes - sealBytes, '\0');
    if (crypto_aead_xchacha20poly1305_ietf_decrypt(bytesOf(document), nullptr, nullptr, bytes + headerBytes,
                                                   static_cast<quint64>(file.size() - headerBytes), bytes, headerBytes,
                                                   bytes + nonceAt, key->content.data()) != 0)
        return CipherError{CipherError::Kind::Damaged};
    // Never weaker than what is written here.
    if (derivation->isUsual())
        m_keys->last = *derivation;
    return document;
}

} // namespace orvelle
