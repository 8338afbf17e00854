#pragma once

#include <QByteArrayView>
#include <QString>

#include <memory>

namespace orvelle {

/// SHA-256 (FIPS 180-4) over bytes that come piece by piece.
class Sha256
{
public:
    Sha256();
    ~Sha256();
    Sha256(const Sha256 &) = delete;
    Sha256 &operator=(const Sha256 &) = delete;

    void add(QByteArrayView bytes);
    /// The digest of all bytes so far, as 64 lower-case hexadecimal digits.
    /// More may be added.
    QString hex() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// The digest of `bytes` alone.
QString sha256Hex(QByteArrayView bytes);

} // namespace orvelle
