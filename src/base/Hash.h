#pragma once

#include <QByteArrayView>
#include <QString>

namespace orvelle {

/// SHA-256 of `bytes` as 64 lower-case hexadecimal digits.
QString sha256Hex(QByteArrayView bytes);

} // namespace orvelle
