#pragma once

#include "desktop/tray_tools.h"
#include "platform/freedesktop/wayland/LayerShell.h"
#include "ui/menu/MenuPopup.h"
#include "wayland/VirtualPointer.h"

#include <QApplication>
#include <QProcess>
#include <QScreen>

#include <gtest/gtest.h>

namespace orvelle::test {

using namespace Qt::StringLiterals;

inline MenuEntry entry(const QString &title, MenuEntry::Kind kind = MenuEntry::Kind::Item)
{
    MenuEntry made;
    made.kind = kind;
    made.title = title;
    made.action = {MenuAction::Kind::OpenLink, QUuid::createUuidV5(QUuid(), title)};
    return made;
}

/// The popup as a layer over the screen of a real compositor, with a mouse and
/// a keyboard of the test's own.
class WaylandMenu : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(shell.isAvailable()) << "the compositor has no layer-shell";
        ASSERT_TRUE(pointer.isThere());
        popup.setOverlayShell(&shell);
    }

    /// The toolkit may crash when a window goes right after a frame.
    void TearDown() override
    {
        popup.close();
        EXPECT_TRUE(waitFor([] { return QApplication::topLevelWidgets().isEmpty(); }));
    }

    /// Opens the menu under a resting pointer, and waits for the first frame.
    void openAt(const QPoint &place)
    {
        pointer.moveTo(place);
        bool opened = false;
        const auto frame = QObject::connect(&popup, &MenuPopup::opened, &popup, [&opened] { opened = true; });
        chosen.reset();
        popup.present({{entry(u"one"_s), entry(u"two"_s), entry(u"more"_s, MenuEntry::Kind::Submenu)}}, {{}, false},
                      [this](MenuAction action) { chosen = action; });
        EXPECT_TRUE(waitFor([&opened] { return opened; }));
        QObject::disconnect(frame);
    }
    QPoint middleOf(int level, int row) const
    {
        const MenuPanel &panel = *popup.panels().at(level);
        return panel.geometry().topLeft() + panel.rowRect(row).center();
    }
    static void type(const QStringList &keys)
    {
        QStringList arguments{u"-s"_s, u"200"_s};
        for (const QString &key : keys)
            arguments += {u"-k"_s, key, u"-s"_s, u"100"_s};
        QProcess process;
        process.start(u"wtype"_s, arguments);
        EXPECT_TRUE(waitFor([&process] { return process.state() == QProcess::NotRunning; }));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
    }

    LayerShell shell;
    VirtualPointer pointer{QGuiApplication::primaryScreen()->size()};
    std::optional<MenuAction> chosen;
    MenuPopup popup{[](const MenuEntry &) { return QList<MenuEntry>{entry(u"inner"_s)}; }};
};

} // namespace orvelle::test
