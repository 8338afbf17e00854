#include "links/exchange/LinkExchange.h"

#include "base/Text.h"
#include "links/BookmarkMaintenance.h"
#include "links/ForwardingBookmarks.h"
#include "links/HomePaths.h"
#include "links/LinkStore.h"
#include "links/LinkTree.h"
#include "links/exchange/ExchangeDocument.h"
#include "links/exchange/ExchangeImport.h"
#include "links/exchange/ExchangeSettings.h"
#include "platform/Clock.h"

#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcLinkExchange, "LinkExchange", QtInfoMsg)

/// How far an import has come when the document is decoded; making bookmarks
/// is the rest.
constexpr int decodedPermille = 500;

bool isCancelled(const WorkProgress *progress)
{
    return progress && progress->cancelled;
}

/// Makes bookmarks until somebody wants it to end, and says how far it is.
class WatchedBookmarks : public ForwardingBookmarks
{
public:
    WatchedBookmarks(FileBookmarks &bookmarks, WorkProgress *progress, qsizetype count)
        : ForwardingBookmarks(bookmarks), m_progress(progress), m_count(count)
    {
    }

    Result<QByteArray, FileBookmarkError> create(const QString &path) const override
    {
        if (isCancelled(m_progress))
            return FileBookmarkError{u"cancelled"_s};
        if (m_progress && m_count > 0)
            m_progress->permille = decodedPermille + static_cast<int>((1000 - decodedPermille) * ++m_done / m_count);
        return ForwardingBookmarks::create(path);
    }

private:
    WorkProgress *m_progress;
    qsizetype m_count;
    mutable qsizetype m_done = 0;
};

QString importReason(ImportMode mode)
{
    return mode == ImportMode::Replace ? u"replace"_s : u"import"_s;
}

} // namespace

void completeDates(LinkList &links, Timestamp now)
{
    changeItems(links, [now](const LinkItem &item) -> std::optional<LinkItem> {
        if (item.createdAt && item.modifiedAt)
            return std::nullopt;
        LinkItem complete = item;
        complete.createdAt = item.createdAt.value_or(now);
        complete.modifiedAt = item.modifiedAt.value_or(Timestamp::distantPast());
        return complete;
    });
}

QString importErrorText(const ImportError &error)
{
    switch (error.kind) {
    case ImportError::Kind::Undecodable:
        return text("error.importUndecodable %@"_text, error.detail);
    case ImportError::Kind::TooLarge:
        return text("error.importTooLarge"_text);
    case ImportError::Kind::TooManyItems:
        return text("error.importTooManyItems"_text);
    case ImportError::Kind::TooDeep:
        return text("error.importTooDeep"_text);
    case ImportError::Kind::ChecksumMismatch:
        return text("import.checksumError"_text);
    case ImportError::Kind::Cancelled:
        return text("error.importCancelled"_text);
    case ImportError::Kind::NotStored:
        return text("error.importNotStored"_text);
    }
    Q_UNREACHABLE();
}

Result<PreparedImport, ImportError> prepareImport(const QByteArray &document, FileBookmarks &bookmarks,
                                                  const QString &home, Timestamp now, WorkProgress *progress)
{
    auto decoded = decodeExchange(document, progress, decodedPermille);
    if (!decoded)
        return decoded.error();
    PreparedImport prepared;
    ExportData data = std::move(decoded).value();
    prepared.hasVersionMismatch = data.version > exchangeVersion;
    prepared.items = resolveHomePaths(validLinks(std::exchange(data.links, {}), prepared.droppedCount), home);
    prepared.document = std::make_shared<const ExportData>(std::move(data));
    WatchedBookmarks watched(bookmarks, progress, collectAllPaths(prepared.items).size());
    recreateBookmarks(prepared.items, watched);
    completeDates(prepared.items, now);
    if (isCancelled(progress))
        return ImportError{ImportError::Kind::Cancelled, {}};
    if (progress)
        progress->permille = 1000;
    return prepared;
}

Result<PreparedImport, ImportError> prepareSync(const QByteArray &document, FileBookmarks &bookmarks,
                                                const QString &home)
{
    auto decoded = decodeExchange(document);
    if (!decoded)
        return decoded.error();
    ExportData data = std::move(decoded).value();
    PreparedImport prepared;
    prepared.hasVersionMismatch = data.version > exchangeVersion;
    prepared.items = std::exchange(data.links, {});
    if (treeLevels(prepared.items) > maxImportDepth)
        return ImportError{ImportError::Kind::TooDeep, {}};
    keepChildrenOfGroupsOnly(prepared.items);
    prepared.items = resolveHomePaths(prepared.items, home);
    prepared.document = std::make_shared<const ExportData>(std::move(data));
    recreateBookmarks(prepared.items, bookmarks);
    return prepared;
}

LinkExchange::LinkExchange(LinkStore &links, ExchangeSettings &settings, FileBookmarks &bookmarks, Clock &clock)
    : m_links(links), m_settings(settings), m_bookmarks(bookmarks), m_clock(clock)
{
}

LinkExchange::Exported LinkExchange::exportJSON() const
{
    return encodeDocument(gatherDocument(), m_links.links(), m_links.homeDirectory());
}

ExportData LinkExchange::gatherDocument() const
{
    ExportData document;
    document.exportDate = m_clock.now();
    document.lastModifiedByMachineId = m_links.machineId();
    m_settings.gather(document);
    return document;
}

LinkExchange::Exported LinkExchange::encodeDocument(ExportData document, const LinkList &links, const QString &home)
{
    document.links = makePortable(links, home);
    const ExchangeDigests digests = exchangeDigests(document);
    document.checksum = digests.links;
    return {encodeExchange(document), digests.content, digests.links};
}

Result<ImportResult, ImportError> LinkExchange::importJSON(const QByteArray &document, ImportMode mode)
{
    const auto prepared = prepareImport(document, m_bookmarks, m_links.homeDirectory(), m_clock.now());
    if (!prepared)
        return prepared.error();
    return importPrepared(*prepared, mode);
}

Result<ImportResult, ImportError> LinkExchange::importPrepared(const PreparedImport &prepared, ImportMode mode)
{
    ImportResult result;
    result.hasVersionMismatch = prepared.hasVersionMismatch;
    if (mode == ImportMode::Sync)
        return result;
    // Shared, as the store may make the edit again when this call is over.
    const auto applied = std::make_shared<AppliedImport>();
    const bool edited = m_links.edit(LinkStore::Step::Destructive, importReason(mode),
                                     [items = prepared.items, mode, applied](LinkList &tree) {
                                         *applied = applyImport(tree, items, mode);
                                         return mode == ImportMode::Replace || applied->imported > 0;
                                     });
    const bool nothingNew = mode == ImportMode::Merge && applied->imported == 0;
    if (!edited && !nothingNew)
        return ImportError{ImportError::Kind::NotStored, {}};
    result.importedCount = applied->imported;
    result.skippedCount = applied->skipped;
    result.quickLaunchImported = m_settings.apply(*prepared.document);
    qCInfo(lcLinkExchange).noquote() << "Import," << importReason(mode) << ": taken" << result.importedCount
                                     << "skipped" << result.skippedCount << "left out" << prepared.droppedCount;
    return result;
}

} // namespace orvelle
