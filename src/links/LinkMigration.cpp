#include "links/LinkMigration.h"

#include "base/Uuid.h"
#include "links/LinkLog.h"
#include "links/LinkTree.h"
#include "platform/FileBookmarks.h"

namespace orvelle {

bool addBookmark(LinkItem &item, const FileBookmarks &bookmarks)
{
    const auto bookmark = bookmarks.create(item.path);
    if (!bookmark && bookmark.error().notLooked)
        return false;
    if (!bookmark) {
        qCWarning(lcLinkStore).noquote().nospace()
            << "Erreur migration bookmark pour " << item.path << ": " << bookmark.error().detail;
        return false;
    }
    item.bookmarkData = *bookmark;
    return true;
}

bool migrateItems(LinkList &links, const FileBookmarks &bookmarks, Timestamp now)
{
    return changeItems(links, [&](const LinkItem &old) -> std::optional<LinkItem> {
        const bool lacksBookmark = (old.type == LinkType::File || old.type == LinkType::Folder) && !old.bookmarkData;
        if (!lacksBookmark && !old.stableId.isEmpty() && old.createdAt && old.modifiedAt)
            return std::nullopt;
        LinkItem item = old;
        bool changed = lacksBookmark && addBookmark(item, bookmarks);
        if (item.stableId.isEmpty()) {
            item.stableId = newUuidText();
            changed = true;
        }
        if (!item.createdAt) {
            item.createdAt = now;
            changed = true;
        }
        if (!item.modifiedAt) {
            item.modifiedAt = Timestamp::distantPast();
            changed = true;
        }
        if (!changed)
            return std::nullopt;
        return item;
    });
}

} // namespace orvelle
