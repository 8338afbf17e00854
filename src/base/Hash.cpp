#include "base/Hash.h"

#include <nettle/sha2.h>

namespace orvelle {

struct Sha256::Private {
    sha256_ctx context{};
};

Sha256::Sha256() : d(std::make_unique<Private>())
{
    sha256_init(&d->context);
}

Sha256::~Sha256() = default;

void Sha256::add(QByteArrayView bytes)
{
    sha256_update(&d->context, static_cast<size_t>(bytes.size()), reinterpret_cast<const uint8_t *>(bytes.data()));
}

QString Sha256::hex() const
{
    sha256_ctx copy = d->context; // asking for the digest ends a context
    QByteArray digest(SHA256_DIGEST_SIZE, Qt::Uninitialized);
    sha256_digest(&copy, SHA256_DIGEST_SIZE, reinterpret_cast<uint8_t *>(digest.data()));
    return QString::fromLatin1(digest.toHex());
}

QString sha256Hex(QByteArrayView bytes)
{
    Sha256 hash;
    hash.add(bytes);
    return hash.hex();
}

} // namespace orvelle
