#include "base/Hash.h"

#include <QCryptographicHash>

namespace orvelle {

QString sha256Hex(QByteArrayView bytes)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(bytes);
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace orvelle
