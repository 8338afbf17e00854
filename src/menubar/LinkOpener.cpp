#include "menubar/LinkOpener.h"

#include "links/LinkStore.h"
#include "platform/Clock.h"
#include "platform/FileBookmarks.h"
#include "platform/Workspace.h"

#include <QLoggingCategory>
#include <QUrl>

namespace orvelle {

namespace {

Q_LOGGING_CATEGORY(lcMenuBar, "MenuBarManager", QtInfoMsg)

} // namespace

LinkOpener::LinkOpener(LinkStore &links, Workspace &workspace, Clock &clock, QObject *parent)
    : QObject(parent), m_links(links), m_workspace(workspace), m_clock(clock)
{
}

bool LinkOpener::open(const LinkItem &item)
{
    switch (item.type) {
    case LinkType::File:
        return openAt(m_links.securePath(item), &Workspace::openFile);
    case LinkType::Folder:
        return openAt(m_links.securePath(item), &Workspace::showFolder);
    case LinkType::Url: {
        const QUrl url(item.path.trimmed(), QUrl::TolerantMode);
        return url.isValid() && !url.scheme().isEmpty() && m_workspace.openUrl(url);
    }
    case LinkType::Note:
    case LinkType::Group:
        return false;
    }
    Q_UNREACHABLE();
}

bool LinkOpener::openAt(const QString &path, bool (Workspace::*handOver)(const QString &))
{
    if (path.isEmpty())
        return false;
    FileBookmarks &bookmarks = m_links.fileBookmarks();
    const bool accessing = bookmarks.startAccess(path);
    const bool opened = (m_workspace.*handOver)(path);
    if (!opened)
        qCInfo(lcMenuBar, "A file or folder link could not be opened");
    if (accessing) {
        m_clock.after(accessKept, this, [this, path] { m_links.fileBookmarks().stopAccess(path); });
    }
    return opened;
}

} // namespace orvelle
