#pragma once

#include "base/Notifications.h"
#include "links/LinkStore.h"
#include "links/SnapshotStore.h"
#include "links/favicons/FaviconSettings.h"
#include "menubar/AppWindows.h"
#include "menubar/WidgetOrderManager.h"
#include "services/DebugModeManager.h"
#include "support/FakeClock.h"
#include "support/FakePasteboard.h"
#include "support/FakeUserDefaults.h"
#include "support/Fakes.h"
#include "ui/common/ExchangeDialogs.h"
#include "ui/notes/NoteEditors.h"
#include "ui/quickadd/QuickAddPanel.h"
#include "ui/settings/SettingsWindow.h"

#include <QTemporaryDir>

namespace orvelle::test {

class FakeAppWindows : public AppWindows
{
public:
    QStringList opened;

    void openSettings() override { opened += QStringLiteral("settings"); }
    void openQuickAdd(const std::optional<QUuid> &group) override
    {
        opened += QStringLiteral("quickAdd:") + (group ? group->toString() : QString());
    }
    void openNoteEditor(const QUuid &note) override { opened += QStringLiteral("note:") + note.toString(); }
    void openTimerCustom() override { opened += QStringLiteral("timer"); }
    void closeSettings() override { opened += QStringLiteral("close"); }
};

class FakeExchangeDialogs : public ExchangeDialogs
{
public:
    QStringList asked;
    bool takesDrops = true;
    QStringList leaves; ///< what is no document among what it takes

    void exportDocument(QWidget *) override { asked += QStringLiteral("export"); }
    void importDocument(QWidget *) override { asked += QStringLiteral("import"); }
    void importBookmarks(QWidget *) override { asked += QStringLiteral("importBookmarks"); }
    void exportBookmarks(QWidget *) override { asked += QStringLiteral("exportBookmarks"); }
    void importLinkFolder(QWidget *) override { asked += QStringLiteral("importLinkFolder"); }
    void openDropped(const QStringList &paths, QWidget *, const std::function<void(const QStringList &)> &rest) override
    {
        asked += QStringLiteral("dropped:") + paths.join(u',');
        if (const QStringList left = takesDrops ? leaves : paths; !left.isEmpty())
            rest(left);
    }
};

/// Everything the windows work on, over fakes, with a real store. Each
/// notification that settings post is noted by name.
struct UiWorld {
    QTemporaryDir folder;
    FakeClock clock;
    FakeUserDefaults defaults;
    Notifications notifications;
    DebugModeManager debugMode{defaults, notifications};
    FakeFileBookmarks bookmarks;
    FakeVolumes volumes;
    FakePowerEvents powerEvents;
    FakeLinkStoreHooks hooks;
    SnapshotStore snapshots{folder.filePath(QStringLiteral("snapshots")), clock};
    LinkStore links{{defaults, debugMode, notifications, clock, bookmarks, volumes, powerEvents, snapshots, hooks}};
    WidgetOrderManager widgetOrder{defaults, debugMode, notifications};
    FaviconSettings favicons{defaults, debugMode, notifications};
    FakeExchangeDialogs exchange;
    FakeAppWindows windows;
    FakeAlerts alerts;
    QStringList openedLinks;
    QStringList revealed;
    QStringList posted;
    SyncControl *sync = nullptr; ///< what the settings are given
    FakeFolderChooser folderChooser;
    FakePasteboard pasteboard{clock};

    UiWorld()
    {
        const auto note = [this](const char *name) { return [this, name] { posted += QString::fromLatin1(name); }; };
        QObject::connect(&notifications, &Notifications::menuletIconChanged, note("menuletIcon"));
        QObject::connect(&notifications, &Notifications::generalSettingsChanged, note("general"));
        QObject::connect(&notifications, &Notifications::syncableSettingsChanged, note("syncable"));
        QObject::connect(&notifications, &Notifications::noteColorChanged, note("noteColor"));
        QObject::connect(&notifications, &Notifications::openQuickAdd, note("openQuickAdd"));
        QObject::connect(&notifications, &Notifications::openNoteEditor, note("openNoteEditor"));
    }

    SettingsServices settings()
    {
        SettingsServices services{links,
                                  defaults,
                                  notifications,
                                  widgetOrder,
                                  debugMode,
                                  snapshots,
                                  favicons,
                                  exchange,
                                  windows,
                                  alerts,
                                  clock,
                                  volumes,
                                  [this](const LinkItem &item) { openedLinks += item.name; },
                                  [this](const QString &path) { revealed += path; },
                                  [](const QString &) {},
                                  {QStringLiteral("1.2.3"), QStringLiteral("7"),
                                   QStringLiteral("/home/ada/.config/orvelle/settings.sqlite"),
                                   QStringLiteral("/home/ada/.local/share/orvelle/snapshots")}};
        services.sync = sync;
        services.folderChooser = &folderChooser;
        return services;
    }
    NoteEditorServices notes()
    {
        return {links, defaults, notifications, clock, debugMode, [this](const QUrl &url) {
                    openedLinks += url.toString();
                    return true;
                }};
    }
    QuickAddServices quickAdd() { return {links, volumes, clock, pasteboard}; }

    LinkItem make(const char *name, LinkType type, const char *path = "")
    {
        LinkItem item = LinkItem::make(QString::fromLatin1(name), QString::fromLatin1(path), type, clock.now());
        if (type == LinkType::Group)
            item.children = LinkList{};
        return item;
    }

    LinkItem addNote(const char *name, const char *content)
    {
        LinkItem note = make(name, LinkType::Note);
        note.noteContent = QString::fromLatin1(content);
        links.addLink(note);
        return note;
    }
};

} // namespace orvelle::test
