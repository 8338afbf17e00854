#include "ui/settings/WelcomeSample.h"

#include "base/Text.h"
#include "platform/FileBookmarks.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace orvelle {

namespace {

LinkItem folderLink(const QString &name, const QString &path, const FileBookmarks &bookmarks, Timestamp now)
{
    LinkItem item = LinkItem::make(name, path, LinkType::Folder, now);
    if (const auto bookmark = bookmarks.create(path))
        item.bookmarkData = *bookmark;
    return item;
}

LinkItem explainingNote(Timestamp now)
{
    LinkItem note =
        LinkItem::make(text("welcome.sampleNote"_text),
                       QStringLiteral("quicknote://") + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(),
                       LinkType::Note, now);
    note.noteContent = text("welcome.sampleNoteText"_text);
    note.customIconColor = QStringLiteral("yellow");
    note.contentModifiedAt = now;
    return note;
}

} // namespace

LinkItem welcomeSample(const FileBookmarks &bookmarks, Timestamp now)
{
    LinkItem group = LinkItem::make(text("welcome.sampleGroup"_text), {}, LinkType::Group, now);
    group.customIconName = QStringLiteral("star.fill");
    group.customIconColor = QStringLiteral("orange");
    LinkList members{
        LinkItem::make(QStringLiteral("Wikipedia"), QStringLiteral("https://www.wikipedia.org"), LinkType::Url, now),
        folderLink(text("welcome.sampleHome"_text), QDir::homePath(), bookmarks, now)};
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    // Without such a folder the system names the home folder.
    if (documents != QDir::homePath() && QFileInfo(documents).isDir())
        members += folderLink(text("welcome.sampleDocuments"_text), documents, bookmarks, now);
    members += explainingNote(now);
    group.children = members;
    return group;
}

} // namespace orvelle
