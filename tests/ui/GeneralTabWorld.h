#pragma once

#include "support/Outline.h"
#include "ui/UiWorld.h"
#include "ui/settings/LinkTreeModel.h"
#include "ui/settings/LinkTreeView.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMimeData>
#include <QTest>

#include <gtest/gtest.h>

namespace orvelle::test {

/// The settings window on its first tab, and the hands of its user.
class GeneralTabWorld : public testing::Test
{
protected:
    void open(const char *outline = "")
    {
        ASSERT_TRUE(world.defaults.write(QStringLiteral("HasLaunchedBefore"), true));
        for (const LinkItem &item : treeFrom(QString::fromLatin1(outline)))
            world.links.addLink(item);
        openAgain();
    }
    void openAgain()
    {
        window.reset();
        window = std::make_unique<SettingsWindow>(world.settings());
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->show();
        window->activateWindow();
        QApplication::processEvents();
        world.posted.clear();
    }
    template<typename T>
    T *child(const char *name)
    {
        return window->findChild<T *>(QString::fromLatin1(name));
    }
    LinkTreeView *tree() { return window->findChild<LinkTreeView *>(); }
    QModelIndex row(const char *name)
    {
        return static_cast<LinkTreeModel *>(tree()->model())->indexOf(idOf(QString::fromLatin1(name)));
    }
    QUuid id(const char *name) { return idOf(QString::fromLatin1(name)); }
    std::string outline() { return outlineOf(world.links.links()).toStdString(); }
    LinkItem item(const char *name) { return world.links.find(id(name)).value_or(LinkItem()); }

    /// Clicks a row, opening what is around it.
    void select(const char *name, Qt::KeyboardModifiers modifiers = {})
    {
        for (QModelIndex above = row(name).parent(); above.isValid(); above = above.parent())
            tree()->expand(above);
        tree()->scrollTo(row(name));
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, modifiers, tree()->visualRect(row(name)).center());
    }
    void type(QWidget *into, const char *text)
    {
        into->setFocus();
        QTest::keyClick(into, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(into, QString::fromUtf8(text));
    }
    /// The rows that can be reached by arrow keys, in order.
    std::string visibleRows()
    {
        QStringList names;
        for (QModelIndex at = tree()->model()->index(0, 0); at.isValid(); at = tree()->indexBelow(at))
            names += at.data().toString();
        return names.join(u' ').toStdString();
    }
    QStringList postedSince() { return std::exchange(world.posted, {}); }
    QString status() { return child<QLabel>("status")->accessibleName(); }

    UiWorld world;
    std::unique_ptr<SettingsWindow> window;
};

} // namespace orvelle::test
