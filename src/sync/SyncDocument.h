#pragma once

#include "base/Result.h"
#include "links/exchange/LinkExchange.h"
#include "platform/CloudContainer.h"
#include "sync/SyncBase.h"

#include <memory>

namespace orvelle {

class SyncCipher;

/// A version of the shared file that was read and checked.
struct SyncDocument {
    QByteArray version; ///< the container's, for the next write
    Timestamp modifiedAt;
    QString hash; ///< SHA-256 of the plain bytes, in hexadecimal digits
    QString versionId;
    bool encrypted = false;
    PreparedImport content;
    std::optional<QStringList> history;
    QSet<QString> items; ///< stable ids
};

/// Why a file is not merged. Nothing of it is taken then, and it is not
/// replaced either.
struct SyncDocumentError {
    enum class Kind {
        NoData,          ///< empty
        Undecodable,     ///< truncated, or no such document
        NewerFormat,     ///< of a version of the program that knows more
        TooLarge,        ///< or too many items, or too deep
        NeedsPassphrase, ///< encrypted, and there is no passphrase
        WrongPassphrase,
    };
    Kind kind = Kind::Undecodable;
    QString detail; ///< for the log
};

/// One sentence for the user.
QString syncDocumentErrorText(const SyncDocumentError &error);

/// Decrypts, decodes and checks. `cipher` may be null. Any thread.
Result<std::shared_ptr<const SyncDocument>, SyncDocumentError>
readSyncDocument(const CloudFile &file, SyncCipher *cipher, FileBookmarks &bookmarks, const QString &home);

} // namespace orvelle
