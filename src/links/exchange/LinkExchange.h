#pragma once

#include "base/Result.h"
#include "base/Timestamp.h"
#include "links/LinkItem.h"

#include <QByteArray>

#include <atomic>
#include <memory>

namespace orvelle {

class Clock;
class ExchangeSettings;
class FileBookmarks;
class LinkStore;
struct ExportData;

enum class ImportMode { Replace, Merge, Sync };

struct ImportResult {
    qint64 importedCount = 0;
    qint64 skippedCount = 0; ///< left out because the tree holds them already
    bool quickLaunchImported = false;
    bool hasVersionMismatch = false;
    friend bool operator==(const ImportResult &, const ImportResult &) = default;
};

struct ImportError {
    enum class Kind { Undecodable, TooLarge, TooManyItems, TooDeep, ChecksumMismatch, Cancelled, NotStored };
    Kind kind = Kind::Undecodable;
    QString detail; ///< names a place in the document, never a name or an address
};

/// One sentence for the user.
QString importErrorText(const ImportError &error);

/// How far long work has come, and the wish to end it. Any thread.
struct WorkProgress {
    std::atomic<int> permille{0};
    std::atomic<bool> cancelled{false};
};

/// A document that was read and checked and can be applied at once.
struct PreparedImport {
    std::shared_ptr<const ExportData> document; ///< without its links, which are the items
    LinkList items;                             ///< the valid ones, paths resolved, bookmarks made
    bool hasVersionMismatch = false;
    qint64 droppedCount = 0; ///< items left out: incomplete, or too deep
};

/// Limits of what is read.
constexpr qint64 maxExchangeBytes = qint64(64) << 20;
constexpr qint64 maxExchangeItems = 200'000;

/// The slow half of an import: decodes, drops invalid items, resolves home
/// paths with `home` (LinkStore::homeDirectory()) and makes bookmarks. Changes
/// nothing; any thread.
Result<PreparedImport, ImportError> prepareImport(const QByteArray &document, FileBookmarks &bookmarks,
                                                  const QString &home, Timestamp now, WorkProgress *progress = nullptr);

/// The same for a document that is merged item by item with its next version
/// to come from here, so that nothing may be left out of it and no date made
/// up: items without a name or a path stay, absent dates stay absent, and a
/// tree that is too deep is refused as a whole.
Result<PreparedImport, ImportError> prepareSync(const QByteArray &document, FileBookmarks &bookmarks,
                                                const QString &home);

/// Gives items the dates that every item of the tree has. One that does not
/// tell when it was changed counts as older than any other copy of it.
void completeDates(LinkList &links, Timestamp now);

/// Writes the tree and the portable settings as an exchange document, and
/// takes one in. Main thread.
class LinkExchange
{
public:
    LinkExchange(LinkStore &links, ExchangeSettings &settings, FileBookmarks &bookmarks, Clock &clock);

    struct Exported {
        QByteArray bytes;
        QByteArray contentDigest; ///< SHA-256 hex text over links and settings
        QString checksum = {};    ///< the document's own, over its links
    };
    Exported exportJSON() const;
    /// The two halves of it: everything but the links as a document, and that
    /// document with `links` as bytes, which any thread can make.
    ExportData gatherDocument() const;
    static Exported encodeDocument(ExportData document, const LinkList &links, const QString &home);

    /// Both halves at once.
    Result<ImportResult, ImportError> importJSON(const QByteArray &document, ImportMode mode);
    /// The quick half. One edit, one undo step, after a snapshot (its reason is
    /// "replace" or "import"); then the settings. Items that the tree holds
    /// already, and ImportMode::Sync, change nothing in it. A tree that could
    /// not be written is kept in memory, as with any other edit.
    Result<ImportResult, ImportError> importPrepared(const PreparedImport &prepared, ImportMode mode);

private:
    LinkStore &m_links;
    ExchangeSettings &m_settings;
    FileBookmarks &m_bookmarks;
    Clock &m_clock;
};

} // namespace orvelle
