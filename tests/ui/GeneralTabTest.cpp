#include "base/Text.h"
#include "links/LinkTree.h"
#include "links/NewNote.h"
#include "ui/GeneralTabWorld.h"
#include "ui/common/SyncPreviewModel.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>

namespace orvelle {

class GeneralTabTest : public test::GeneralTabWorld
{
protected:
    /// The button that tries again, in a window beside a store that met
    /// unreadable links.
    QPushButton *offerAboutDamage()
    {
        test::UiWorld &w = world;
        EXPECT_TRUE(w.defaults.write(LinkStore::linksBaseKey(), QByteArray("{broken")));
        damaged = std::make_unique<LinkStore>(LinkStore::Services{w.defaults, w.debugMode, w.notifications, w.clock,
                                                                  w.bookmarks, w.volumes, w.powerEvents, w.snapshots,
                                                                  w.hooks});
        EXPECT_FALSE(damaged->rescuedDataKeys().isEmpty());
        open();
        for (QPushButton *button : window->findChildren<QPushButton *>()) {
            if (button->text() == QStringLiteral("Try again") && button->isVisible())
                return button;
        }
        return nullptr;
    }

    std::unique_ptr<LinkStore> damaged;
};

TEST_F(GeneralTabTest, IconChoiceIsStoredAndAnnounced)
{
    ASSERT_TRUE(world.defaults.write(QStringLiteral("MenuletIcon"), QStringLiteral("no such icon")));
    open();
    EXPECT_TRUE(child<QRadioButton>("menuletIcon.link")->isChecked());
    child<QRadioButton>("menuletIcon.link.circle")->click();
    EXPECT_EQ(world.defaults.get<QString>(QStringLiteral("MenuletIcon")), QStringLiteral("link.circle"));
    EXPECT_EQ(postedSince(),
              (QStringList{QStringLiteral("menuletIcon"), QStringLiteral("general"), QStringLiteral("syncable")}));
    child<QRadioButton>("menuletIcon.link.circle")->click();
    EXPECT_TRUE(postedSince().isEmpty());

    // An import writes the key itself and announces it.
    ASSERT_TRUE(world.defaults.write(QStringLiteral("MenuletIcon"), QStringLiteral("globe")));
    emit world.notifications.generalSettingsChanged();
    EXPECT_TRUE(child<QRadioButton>("menuletIcon.globe")->isChecked());
}

TEST_F(GeneralTabTest, AChoiceThatCannotBeStoredFallsBack)
{
    open();
    world.defaults.failWrites(DefaultsError{DefaultsError::Kind::DiskFull, {}});
    child<QRadioButton>("menuletIcon.star")->click();
    child<QCheckBox>("confirmBeforeQuit")->click();
    EXPECT_TRUE(child<QRadioButton>("menuletIcon.link")->isChecked());
    EXPECT_TRUE(child<QCheckBox>("confirmBeforeQuit")->isChecked());
    EXPECT_TRUE(postedSince().isEmpty());
}

TEST_F(GeneralTabTest, QuitConfirmationIsOnWhenNeverWritten)
{
    open();
    auto *box = child<QCheckBox>("confirmBeforeQuit");
    EXPECT_TRUE(box->isChecked());
    box->click();
    EXPECT_EQ(world.defaults.get<bool>(QStringLiteral("ConfirmBeforeQuit")), false);
    EXPECT_EQ(postedSince(), (QStringList{QStringLiteral("general"), QStringLiteral("syncable")}));
}

TEST_F(GeneralTabTest, UnreadableLinksAreOfferedAgain)
{
    QPushButton *retry = offerAboutDamage();
    ASSERT_NE(retry, nullptr);
    retry->click();
    EXPECT_EQ(world.alerts.shown.size(), 1) << "still unreadable";
}

TEST_F(GeneralTabTest, TheOfferAboutUnreadableLinksKeepsTheFocusWhileLinksChange)
{
    QPushButton *retry = offerAboutDamage();
    ASSERT_NE(retry, nullptr);
    retry->setFocus();
    world.addNote("Another", "from elsewhere");
    EXPECT_EQ(window->focusWidget(), retry);
    EXPECT_TRUE(retry->isVisible());
}

TEST_F(GeneralTabTest, OverlongNamesAreShownByTheirEnds)
{
    open("a f[]");
    const QString endless = QString(1'000'000, u'x');
    world.links.updateLinks({id("a"), id("f")}, [&endless](LinkItem &item) { item.name = endless; });
    EXPECT_LT(row("a").data().toString().size(), 400);
    EXPECT_EQ(row("a").data(Qt::EditRole).toString(), endless);
    QMenu *groups = nullptr;
    for (QMenu *menu : window->findChildren<QMenu *>()) {
        if (menu->title() == text("settings.moveTo"_text))
            groups = menu;
    }
    ASSERT_NE(groups, nullptr);
    emit groups->aboutToShow();
    for (const QAction *action : groups->actions())
        EXPECT_LT(action->text().size(), 200);
    SyncAnalysis analysis;
    analysis.changes.append(SyncChange());
    analysis.changes.front().importedLink = item("a");
    analysis.changes.front().category = SyncCategory::Added;
    const SyncPreviewModel changes(analysis, true);
    EXPECT_LT(changes.index(0, 0, changes.index(0, 0)).data().toString().size(), 400);
}

TEST_F(GeneralTabTest, SiteIconsSayWhatIsSentAndToWhom)
{
    open();
    auto *box = child<QCheckBox>("siteIcons");
    EXPECT_TRUE(box->isChecked());
    EXPECT_TRUE(child<QLabel>("siteIconsHint")->text().contains(world.favicons.serviceHost()));
    box->click();
    EXPECT_FALSE(world.favicons.isEnabled());
    world.favicons.setEnabled(true);
    EXPECT_TRUE(box->isChecked());
}

TEST_F(GeneralTabTest, ListFollowsTheTreeWithoutLosingItsPlace)
{
    open("a work[b deep[c]] shut[d] e");
    tree()->expand(row("work"));
    tree()->expand(row("deep"));
    select("c");
    select("e", Qt::ControlModifier);

    // From elsewhere: a move between groups, a new item, a new name.
    ASSERT_FALSE(world.links.moveLink(id("c"), id("shut")));
    world.links.addLink(test::namedLink(QStringLiteral("new")));
    LinkItem renamed = item("work");
    renamed.name = QStringLiteral("labour");
    world.links.updateLink(renamed);
    QApplication::processEvents();
    EXPECT_EQ(tree()->selectedIds(), (QList<QUuid>{id("c"), id("e")}));
    EXPECT_EQ(visibleRows(), "a labour b deep shut e new");
    world.links.undo();
    world.links.undo();
    world.links.undo();
    EXPECT_EQ(visibleRows(), "a work b deep c shut e");
    EXPECT_EQ(tree()->selectedIds(), (QList<QUuid>{id("c"), id("e")}));
}

TEST_F(GeneralTabTest, OpenGroupsAreRememberedAndASearchDoesNotChangeThem)
{
    open("work[b deep[c]] shut[d]");
    tree()->expand(row("work"));
    openAgain();
    EXPECT_EQ(visibleRows(), "work b deep shut");

    auto *search = child<QLineEdit>("linkSearch");
    QTest::keyClick(tree(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), search);
    QTest::keyClicks(search, QStringLiteral("C"));
    EXPECT_EQ(visibleRows(), "work deep c");
    QTest::keyClick(search, Qt::Key_Down);
    EXPECT_EQ(QApplication::focusWidget(), tree());
    QTest::keyClicks(search, QStringLiteral("x"));
    EXPECT_EQ(child<QStackedWidget>("linkPages")->currentIndex(), 2) << "says that nothing was found";
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_TRUE(search->text().isEmpty());
    EXPECT_EQ(visibleRows(), "work b deep shut");
    openAgain();
    EXPECT_EQ(visibleRows(), "work b deep shut");
}

TEST_F(GeneralTabTest, RemovingSeveralIsOneStepAndSelectsWhatFollows)
{
    open("a f[b c] d e");
    EXPECT_FALSE(child<QAction>("remove")->isEnabled());
    tree()->expand(row("f"));
    select("b");
    select("f", Qt::ControlModifier);
    select("a", Qt::ControlModifier);
    QTest::keyClick(tree(), Qt::Key_Delete);
    EXPECT_EQ(outline(), "d e");
    EXPECT_EQ(tree()->selectedIds(), QList<QUuid>{id("d")});
    QTest::keyClick(tree(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(outline(), "a f[b c] d e");
    QTest::keyClick(tree(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(outline(), "d e");
    select("e");
    QTest::keyClick(tree(), Qt::Key_Delete);
    EXPECT_EQ(tree()->selectedIds(), QList<QUuid>{id("d")});
    QTest::keyClick(tree(), Qt::Key_Delete);
    EXPECT_EQ(child<QStackedWidget>("linkPages")->currentIndex(), 1) << "an empty list says what to do";
}

TEST_F(GeneralTabTest, KeysMoveWithinTheListAndInAndOutOfGroups)
{
    open("f[a b] c d");
    const struct {
        const char *row;
        Qt::Key key;
        const char *after;
    } steps[] = {
        {"d", Qt::Key_Up, "f[a b] d c"},   {"d", Qt::Key_Up, "d f[a b] c"},    {"d", Qt::Key_Up, "d f[a b] c"},
        {"d", Qt::Key_Down, "f[a b] d c"}, {"d", Qt::Key_Right, "f[a b d] c"}, {"d", Qt::Key_Right, "f[a b d] c"},
        {"d", Qt::Key_Down, "f[a b d] c"}, {"a", Qt::Key_Left, "f[b d] a c"},  {"a", Qt::Key_Left, "f[b d] a c"},
        {"c", Qt::Key_Down, "f[b d] a c"},
    };
    for (const auto &step : steps) {
        select(step.row);
        QTest::keyClick(tree(), step.key, Qt::AltModifier);
        EXPECT_EQ(outline(), step.after);
        EXPECT_EQ(tree()->selectedIds(), QList<QUuid>{id(step.row)}) << "the moved one stays selected";
    }
    select("b");
    select("d", Qt::ControlModifier);
    select("a");
    select("c", Qt::ControlModifier);
    QTest::keyClick(tree(), Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(outline(), "a c f[b d]") << "several together";
}

TEST_F(GeneralTabTest, NewItemsGoIntoTheSelectedGroupWhereThereIsRoom)
{
    open("f[g[h[x]]] c");
    child<QAction>("addLink")->trigger();
    EXPECT_EQ(postedSince(), QStringList{QStringLiteral("openQuickAdd")});
    select("x"); // its own group is at the last level
    child<QAction>("addLink")->trigger();
    EXPECT_EQ(world.windows.opened, QStringList{QStringLiteral("quickAdd:") + id("g").toString()});
    ASSERT_TRUE(setNewNoteColor(world.defaults, QStringLiteral("pink")));
    child<QAction>("addNote")->trigger();
    EXPECT_EQ(postedSince(), QStringList{QStringLiteral("openNoteEditor")});
    const LinkItem note = item("g").children->last();
    EXPECT_EQ(note.type, LinkType::Note);
    EXPECT_TRUE(note.path.startsWith(QStringLiteral("quicknote://")));
    EXPECT_EQ(note.customIconColor, QStringLiteral("pink"));
    EXPECT_EQ(tree()->selectedIds(), QList<QUuid>{note.id});

    select("x");
    child<QAction>("addGroup")->trigger();
    ASSERT_EQ(item("f").children->size(), 2) << "a group that can still take something";
    auto *editor = tree()->viewport()->findChild<QLineEdit *>();
    ASSERT_NE(editor, nullptr) << "it wants a name";
    QTest::keyClicks(editor, QStringLiteral("Named"));
    // The list changes while its editor is still open.
    world.links.addLink(test::namedLink(QStringLiteral("late")));
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(item("f").children->last().name, QStringLiteral("Named"));
}

TEST_F(GeneralTabTest, RenamingInPlaceOpensByKeyAndRefusesAnEmptyName)
{
    open("a b");
    select("a");
    for (const auto &[typed, name] : {std::pair{" Better ", "Better"}, {"  ", "Better"}}) {
        QTest::keyClick(tree(), Qt::Key_F2);
        auto *editor = tree()->viewport()->findChild<QLineEdit *>();
        ASSERT_NE(editor, nullptr);
        type(editor, typed);
        QTest::keyClick(editor, Qt::Key_Return);
        QApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(item("a").name, QString::fromLatin1(name));
    }
    QTest::keyClick(tree(), Qt::Key_Return);
    EXPECT_EQ(world.openedLinks, QStringList{QStringLiteral("Better")});
}

} // namespace orvelle
