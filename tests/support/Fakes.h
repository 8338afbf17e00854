#pragma once

#include "links/LinkStore.h"
#include "platform/Alerts.h"
#include "platform/DistantFiles.h"
#include "platform/FileBookmarks.h"
#include "platform/PowerEvents.h"
#include "platform/StatusItem.h"
#include "platform/Volumes.h"
#include "platform/Workspace.h"

#include <QHash>
#include <QList>
#include <QPointer>
#include <QSet>

namespace orvelle::test {

/// Bookmarks are "bm:" and the path. The test says what the disk looks like.
class FakeFileBookmarks : public FileBookmarks
{
public:
    QSet<QString> missing;           ///< paths that do not exist
    QHash<QString, QString> renamed; ///< old path to new path
    QSet<QString> inaccessible;
    QStringList accessed;
    QStringList stopped;

    static QByteArray bookmarkOf(const QString &path) { return "bm:" + path.toUtf8(); }

    Result<QByteArray, FileBookmarkError> create(const QString &path) const override
    {
        if (missing.contains(path))
            return FileBookmarkError{QStringLiteral("no such file")};
        return bookmarkOf(path);
    }

    Result<ResolvedBookmark, FileBookmarkError> resolve(const QByteArray &bookmark) const override
    {
        if (!bookmark.startsWith("bm:"))
            return FileBookmarkError{QStringLiteral("not a bookmark")};
        const QString path = QString::fromUtf8(bookmark.mid(3));
        if (const auto to = renamed.constFind(path); to != renamed.constEnd())
            return ResolvedBookmark{*to, true};
        if (missing.contains(path))
            return FileBookmarkError{QStringLiteral("no such file")};
        return ResolvedBookmark{path, false};
    }

    bool startAccess(const QString &path) override
    {
        if (inaccessible.contains(path))
            return false;
        accessed += path;
        return true;
    }

    void stopAccess(const QString &path) override { stopped += path; }
};

class FakeVolumes : public Volumes
{
public:
    QList<RemoteVolume> remote;
    QStringList distant; ///< mount points
    QString home = QStringLiteral("/home/ada");

    std::optional<RemoteVolume> remoteVolumeHolding(const QString &path) const override
    {
        for (const RemoteVolume &volume : remote) {
            if (path == volume.mountPoint || path.startsWith(volume.mountPoint + u'/'))
                return volume;
        }
        return std::nullopt;
    }

    QString distantVolumeHolding(const QString &path) const override
    {
        for (const QString &volume : distant) {
            if (path.startsWith(volume + u'/'))
                return volume;
        }
        return {};
    }

    QString realHomeDirectory() const override { return home; }
};

/// Distant volumes answer when the test says so.
class FakeDistantFiles : public DistantFiles
{
public:
    explicit FakeDistantFiles(FileBookmarks &bookmarks) : m_bookmarks(bookmarks) {}

    void look(const QString &volume, QObject *receiver, const Look &look) override
    {
        m_waiting += {volume, receiver, look};
    }

    qsizetype waiting() const { return m_waiting.size(); }
    void answers(const QString &volume)
    {
        const QList<Waiting> before = std::exchange(m_waiting, {});
        for (const Waiting &each : before) {
            if (each.volume != volume)
                m_waiting += each;
            else if (const Delivery delivery = each.look(m_bookmarks); delivery && each.receiver)
                delivery();
        }
    }

private:
    struct Waiting {
        QString volume;
        QPointer<QObject> receiver;
        Look look;
    };

    FileBookmarks &m_bookmarks;
    QList<Waiting> m_waiting;
};

class FakePowerEvents : public PowerEvents
{
public:
    void start() override {}
    void systemPowersOff() { emit willPowerOff(); }
    void systemWakes() { emit didWake(); }
    void screensGoDark() { emit screensDidSleep(); }
    void screensComeBack() { emit screensDidWake(); }
};

class FakeWorkspace : public Workspace
{
public:
    QStringList opened; ///< "url:...", "file:...", "folder:...", "reveal:..."
    WindowToken focused = 7;
    QList<WindowToken> focusRequests;

    bool openUrl(const QUrl &url) override
    {
        opened += QStringLiteral("url:") + url.toString(QUrl::FullyEncoded);
        return true;
    }
    bool openFile(const QString &path) override
    {
        opened += QStringLiteral("file:") + path;
        return true;
    }
    bool showFolder(const QString &path) override
    {
        opened += QStringLiteral("folder:") + path;
        return true;
    }
    bool reveal(const QString &path) override
    {
        opened += QStringLiteral("reveal:") + path;
        return true;
    }
    WindowToken focusedWindow() const override { return focused; }
    void focusWindow(WindowToken window) override { focusRequests += window; }
};

class FakeAlerts : public Alerts
{
public:
    QList<Alert> shown;

    void show(const Alert &alert, std::function<void(int)> chosen) override
    {
        shown += alert;
        m_pending += chosen;
    }

    /// The user presses the button of the oldest unanswered alert.
    void userChooses(int button)
    {
        const auto chosen = m_pending.takeFirst();
        if (chosen)
            chosen(button);
    }

    qsizetype unanswered() const { return m_pending.size(); }

private:
    QList<std::function<void(int)>> m_pending;
};

class FakeFolderChooser : public FolderChooser
{
public:
    QString answer; ///< empty: cancelled
    QStringList startFolders;

    void chooseFolder(const QString &, const QString &, const QString &startFolder,
                      std::function<void(QString)> done) override
    {
        startFolders += startFolder;
        done(answer);
    }
};

class FakeStatusItem : public StatusItem
{
public:
    Painter painter;
    QString title;
    QString toolTip;
    QList<HostMenuEntry> hostMenu;
    bool shown = false;
    Host currentHost = Host::Notifier;

    void show() override { shown = true; }
    void setPainter(Painter p) override { painter = std::move(p); }
    void setTitle(const QString &t) override { title = t; }
    void setToolTip(const QString &t) override { toolTip = t; }
    void setHostMenu(const QList<HostMenuEntry> &entries) override { hostMenu = entries; }
    Host host() const override { return currentHost; }
    void userClicks(const QPoint &at) { emit activated(at); }
    void userRightClicks(const QPoint &at) { emit contextMenuRequested(at); }
    void userChoosesInHostMenu(int id) { emit hostMenuChosen(id); }
};

/// Records the calls in order.
class FakeLinkStoreHooks : public LinkStoreHooks
{
public:
    QStringList calls;

    void hydrateFavicons(LinkList &) override { calls += QStringLiteral("hydrateFavicons"); }
    void cleanupOrphanFavicons(const LinkList &) override { calls += QStringLiteral("cleanupOrphanFavicons"); }
    void loadSyncState() override { calls += QStringLiteral("loadSyncState"); }
    void scheduleAutoSync() override { calls += QStringLiteral("scheduleAutoSync"); }
    void systemDidWake() override { calls += QStringLiteral("systemDidWake"); }
    void syncableSettingsDidChange() override { calls += QStringLiteral("syncableSettingsDidChange"); }
};

} // namespace orvelle::test
