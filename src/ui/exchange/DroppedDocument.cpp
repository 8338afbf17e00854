#include "ui/exchange/DroppedDocument.h"

#include "links/exchange/BookmarksHtml.h"
#include "links/exchange/LinkFiles.h"

#include <QDirIterator>
#include <QFileInfo>

namespace orvelle {

namespace {

constexpr qint64 headBytes = 4096;
/// Of a folder; who drops a larger one wants something else.
constexpr int maxEntriesSeen = 2000;

bool holdsLinkFiles(const QString &folder)
{
    QDirIterator entries(folder, QDir::Files);
    for (int seen = 0; entries.hasNext() && seen < maxEntriesSeen; ++seen) {
        if (isLinkFileName(entries.next()))
            return true;
    }
    return false;
}

bool looksLikeDocument(const QByteArray &head)
{
    return head.trimmed().startsWith('{') && (head.contains("\"exportDate\"") || head.contains("\"appVersion\""));
}

} // namespace

DroppedKind droppedKind(const QString &path)
{
    const QFileInfo info(path);
    if (info.isDir())
        return holdsLinkFiles(path) ? DroppedKind::LinkFolder : DroppedKind::Nothing;
    if (!info.isFile())
        return DroppedKind::Nothing;
    if (info.suffix().compare(QStringLiteral("ovexport"), Qt::CaseInsensitive) == 0)
        return DroppedKind::Document;
    if (isLinkFileName(path))
        return DroppedKind::LinkFile;
    const QByteArray head = headOfPlainFile(path, headBytes);
    if (looksLikeDocument(head))
        return DroppedKind::Document;
    return looksLikeBookmarksHtml(head) ? DroppedKind::Bookmarks : DroppedKind::Nothing;
}

} // namespace orvelle
