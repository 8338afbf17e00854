#include "menubar/QuickLaunchManager.h"
#include "support/FakeApplications.h"
#include "ui/UiWorld.h"
#include "ui/menu/MenuPanel.h"
#include "ui/menu/rows/QuickLaunchRowView.h"
#include "ui/settings/ApplicationChooser.h"
#include "ui/settings/QuickLaunchSection.h"
#include "ui/settings/QuickLaunchSlotList.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

using namespace Qt::StringLiterals;

struct QuickLaunchUiTest : testing::Test {
    QuickLaunchUiTest()
    {
        for (const QString &name : {u"Editor"_s, u"Mail"_s, u"Music"_s, u"Paint"_s})
            applications.install(name, {name == u"Mail" ? u"letters"_s : QString()});
    }
    void fill()
    {
        manager.setApp(0, u"/apps/editor.desktop"_s);
        manager.setApp(2, u"/apps/mail.desktop"_s);
    }
    QList<QuickLaunchButton *> buttons(const QWidget &in) { return in.findChildren<QuickLaunchButton *>(); }

    UiWorld world;
    FakeApplications applications;
    QuickLaunchManager manager{{world.defaults, world.debugMode, world.notifications, applications}};
    QList<int> launched;
    int openedSettings = 0;
    QuickLaunchRowView::Actions actions{[this](int slot) { launched += slot; }, [this] { ++openedSettings; }};
};

TEST_F(QuickLaunchUiTest, TheRowStartsWhatIsInItsSlots)
{
    fill();
    QuickLaunchRowView row(manager, applications, world.notifications, actions, nullptr);
    row.resize(260, row.sizeHint().height());
    row.show();
    row.activateWindow();
    QApplication::processEvents();
    ASSERT_EQ(buttons(row).size(), 2);
    QTest::mouseClick(buttons(row)[1], Qt::LeftButton);
    row.setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_EQ(launched, (QList<int>{2, 0}));

    // The application goes while the menu is open.
    applications.apps.removeFirst();
    emit world.notifications.quickLaunchChanged();
    EXPECT_TRUE(buttons(row)[0]->content().isGone);
    EXPECT_EQ(buttons(row)[0]->accessibleDescription(), text("quicklaunch.gone"_text));
    EXPECT_EQ(buttons(row)[0]->accessibleName(), u"Editor"_s);
    QTest::mouseClick(buttons(row)[0], Qt::LeftButton);
    EXPECT_EQ(launched.size(), 2);
}

TEST_F(QuickLaunchUiTest, ARowWithoutApplicationsLeadsToTheSettings)
{
    QuickLaunchRowView row(manager, applications, world.notifications, actions, nullptr);
    row.show();
    auto *choose = row.findChild<MenuRowButton *>(u"choose"_s);
    ASSERT_TRUE(choose->isVisible());
    choose->click();
    EXPECT_EQ(openedSettings, 1);
    fill();
    EXPECT_FALSE(choose->isVisible());
}

TEST_F(QuickLaunchUiTest, EveryStyleShowsWhichApplicationIsTheCurrentOne)
{
    fill();
    for (const auto style : {QuickLaunchDisplayStyle::Souffle, QuickLaunchDisplayStyle::Dock,
                             QuickLaunchDisplayStyle::Neon, QuickLaunchDisplayStyle::Encre}) {
        manager.setDisplayStyle(style);
        QuickLaunchRowView row(manager, applications, world.notifications, actions, nullptr);
        row.resize(260, row.sizeHint().height());
        row.show();
        row.activateWindow();
        QApplication::processEvents();
        const QImage resting = row.grab().toImage();
        buttons(row)[1]->setFocus();
        EXPECT_NE(row.grab().toImage(), resting) << rawValue(style).toStdString();
    }
}

TEST_F(QuickLaunchUiTest, SlotsAreChosenMovedAndRemoved)
{
    QuickLaunchSection section(manager, applications, world.notifications, nullptr);
    section.show();
    auto *list = section.findChild<QuickLaunchSlotList *>();
    const auto button = [&section](const char *name) {
        return section.findChild<QPushButton *>(QString::fromLatin1(name));
    };
    EXPECT_FALSE(button("remove")->isEnabled());
    button("choose")->click();
    auto *chooser = section.findChild<ApplicationChooser *>();
    ASSERT_TRUE(chooser);
    auto *search = chooser->findChild<QLineEdit *>();
    QTest::keyClicks(search, u"LETT"_s);
    QTest::keyClick(search, Qt::Key_Return);
    ASSERT_TRUE(manager.apps().at(0));
    EXPECT_EQ(manager.apps().at(0)->name, u"Mail"_s) << "found by its keyword";

    section.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&section));
    button("slotDown")->setFocus();
    QTest::keyClick(button("slotDown"), Qt::Key_Space);
    EXPECT_TRUE(manager.apps().at(1));
    EXPECT_TRUE(button("slotDown")->hasFocus());
    EXPECT_EQ(list->currentRow(), 1);
    QTest::keyClick(list, Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(manager.apps().at(2));
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_FALSE(manager.apps().at(2));
    EXPECT_EQ(list->item(2)->text(), text("quicklaunch.empty"_text));
}

} // namespace
} // namespace orvelle::test
