#include "sync/SyncDocument.h"

#include "base/Hash.h"
#include "base/Text.h"
#include "links/exchange/ExchangeDocument.h"
#include "sync/LinkMerge.h"
#include "sync/SyncCipher.h"

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

using Kind = SyncDocumentError::Kind;

SyncDocumentError cipherProblem(const CipherError &error)
{
    switch (error.kind) {
    case CipherError::Kind::WrongPassphrase:
        return {Kind::WrongPassphrase, u"the passphrase does not fit"_s};
    case CipherError::Kind::NewerFormat:
        return {Kind::NewerFormat, u"encrypted in a newer form"_s};
    case CipherError::Kind::Damaged:
        return {Kind::Undecodable, u"the encrypted file is damaged"_s};
    case CipherError::Kind::Failed:
        return {Kind::Undecodable, u"the key could not be derived"_s};
    }
    Q_UNREACHABLE();
}

SyncDocumentError importProblem(const ImportError &error)
{
    using Import = ImportError::Kind;
    const bool size =
        error.kind == Import::TooLarge || error.kind == Import::TooManyItems || error.kind == Import::TooDeep;
    return {size ? Kind::TooLarge : Kind::Undecodable, importErrorText(error)};
}

} // namespace

QString syncDocumentErrorText(const SyncDocumentError &error)
{
    switch (error.kind) {
    case Kind::NoData:
        return text("cloudSync.document.empty"_text);
    case Kind::Undecodable:
        return text("cloudSync.document.undecodable"_text);
    case Kind::NewerFormat:
        return text("cloudSync.document.newer"_text);
    case Kind::TooLarge:
        return text("cloudSync.document.tooLarge"_text);
    case Kind::NeedsPassphrase:
        return text("cloudSync.document.needsPassphrase"_text);
    case Kind::WrongPassphrase:
        return text("cloudSync.document.wrongPassphrase"_text);
    }
    Q_UNREACHABLE();
}

Result<std::shared_ptr<const SyncDocument>, SyncDocumentError>
readSyncDocument(const CloudFile &file, SyncCipher *cipher, FileBookmarks &bookmarks, const QString &home)
{
    auto document = std::make_shared<SyncDocument>();
    QByteArray plain = file.bytes;
    if (plain.trimmed().isEmpty())
        return SyncDocumentError{Kind::NoData, u"Lecture du fichier de synchro impossible (aucune donnée)"_s};
    if (isEncryptedSyncFile(plain)) {
        if (!cipher)
            return SyncDocumentError{Kind::NeedsPassphrase, u"encrypted, and no passphrase known"_s};
        auto decrypted = cipher->decrypt(plain);
        if (!decrypted)
            return cipherProblem(decrypted.error());
        plain = std::move(decrypted).value();
        document->encrypted = true;
    }
    auto prepared = prepareSync(plain, bookmarks, home);
    if (!prepared)
        return importProblem(prepared.error());
    if (prepared->hasVersionMismatch)
        return SyncDocumentError{Kind::NewerFormat, u"format version %1"_s.arg(prepared->document->version)};
    document->version = file.version;
    document->modifiedAt = file.modifiedAt;
    document->hash = sha256Hex(plain);
    document->versionId = syncVersionId(plain);
    document->content = std::move(prepared).value();
    document->items = collectAllStableIds(document->content.items);
    document->history = documentHistory(*document->content.document);
    return std::shared_ptr<const SyncDocument>(std::move(document));
}

} // namespace orvelle
