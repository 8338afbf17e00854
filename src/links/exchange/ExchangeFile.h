#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvelle {

/// Why a file could not be read or written, in one sentence for the user.
struct FileError {
    QString sentence;
};

/// The bytes of a document. Refused without a read: what is no plain file (a
/// pipe would keep us waiting) and what is larger than maxExchangeBytes.
Result<QByteArray, FileError> readExchangeFile(const QString &path);

/// Writes a file that only the user can read (mode 0600). The bytes are on the
/// disk when the call returns; until then, and after a failure, a file of this
/// name is what it was. Symbolic links are followed.
std::optional<FileError> writePrivateFile(const QString &path, const QByteArray &bytes);

} // namespace orvelle
