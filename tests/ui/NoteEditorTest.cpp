#include "links/LinkCodec.h"
#include "links/NewNote.h"
#include "links/richtext/RtfReader.h"
#include "links/richtext/RtfWriter.h"
#include "ui/UiWorld.h"
#include "ui/common/ColorMenu.h"
#include "ui/notes/NoteEditorWindow.h"
#include "ui/notes/NotePlaces.h"
#include "ui/notes/NoteTitleBarView.h"
#include "ui/notes/QuickNoteEditorView.h"
#include "ui/notes/RichTextEdit.h"

#include <QContextMenuEvent>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace orvelle {

using namespace std::chrono_literals;
using Choice = NoteDocument::Choice;
using State = NoteDocument::State;

class NoteEditorTest : public testing::Test
{
protected:
    void SetUp() override
    {
        LinkItem item = world.make("List", LinkType::Note);
        item.noteContent = QStringLiteral("bread");
        item.noteRTFData = QByteArray("{\\rtf1 bread}");
        item.contentModifiedAt = world.clock.now();
        id = item.id;
        world.links.addLink(item);
        world.clock.advance(1h);
        window = editors.open(id);
    }

    RichTextEdit *editor() { return window->findChild<RichTextEdit *>(); }
    NoteDocument &document() { return window->findChild<QuickNoteEditorView *>()->document(); }
    LinkItem stored() { return world.links.find(id).value(); }
    QString storedText() { return stored().noteContent.value_or(QString()); }
    void type(const char *text)
    {
        editor()->moveCursor(QTextCursor::End);
        QTest::keyClicks(editor(), QString::fromLatin1(text));
    }
    void changeElsewhere(const char *text)
    {
        world.links.edit(LinkStore::Step::Ordinary, {}, [text](LinkList &links) {
            links.front().noteContent = QString::fromLatin1(text);
            return true;
        });
    }
    void closeWindow()
    {
        window->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    test::UiWorld world;
    NoteEditors editors{world.notes()};
    QUuid id;
    QPointer<NoteEditorWindow> window;
};

TEST_F(NoteEditorTest, SavesHalfASecondAfterTheLastKey)
{
    type("!");
    world.clock.advance(499ms);
    EXPECT_EQ(storedText(), QStringLiteral("bread"));
    type("!");
    world.clock.advance(499ms);
    EXPECT_EQ(storedText(), QStringLiteral("bread"));
    const int writes = world.defaults.writeCount();
    world.clock.advance(1ms);
    EXPECT_EQ(storedText(), QStringLiteral("bread!!"));
    EXPECT_EQ(world.defaults.writeCount(), writes + 1);
    EXPECT_EQ(stored().contentModifiedAt, world.clock.now());
    EXPECT_EQ(stored().modifiedAt, world.clock.now());
    EXPECT_EQ(readRtf(stored().noteRTFData.value())->text, RichText::fromPlainText(u"bread!!"));
}

TEST_F(NoteEditorTest, ClosingSavesAtOnceAndOnlyWhatChanged)
{
    const LinkItem before = stored();
    closeWindow();
    EXPECT_EQ(stored(), before);

    window = editors.open(id);
    type("x");
    QTest::keyClick(editor(), Qt::Key_Backspace);
    closeWindow();
    EXPECT_EQ(stored(), before) << "typed and taken back";

    window = editors.open(id);
    type("x");
    closeWindow();
    EXPECT_EQ(storedText(), QStringLiteral("breadx"));
}

TEST_F(NoteEditorTest, OpeningAndClosingLeavesForeignRichTextAsItIs)
{
    const QByteArray foreign = "{\\rtf1\\ansi\\cocoartf2761{\\colortbl;\\red1\\green2\\blue3;}\\cf1\\b bread}";
    world.links.edit(LinkStore::Step::Ordinary, {}, [&foreign](LinkList &links) {
        links.front().noteRTFData = foreign;
        return true;
    });
    closeWindow();
    window = editors.open(id);
    EXPECT_TRUE(editor()->richText().paragraphs.front().runs.front().style.bold);
    closeWindow();
    EXPECT_EQ(stored().noteRTFData, foreign);
}

TEST_F(NoteEditorTest, FormattingIsAChangeOfTheText)
{
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    editor()->selectAll();
    QTest::keyClick(editor(), Qt::Key_B, Qt::ControlModifier);
    world.clock.advance(500ms);
    EXPECT_EQ(storedText(), QStringLiteral("bread"));
    EXPECT_EQ(stored().contentModifiedAt, world.clock.now());
    EXPECT_TRUE(readRtf(*stored().noteRTFData)->text.paragraphs.front().runs.front().style.bold);
}

TEST_F(NoteEditorTest, RichTextFromElsewhereWithTheSameWordsIsAChangeToo)
{
    const auto makeBold = [](LinkList &links) {
        RichText text;
        text.paragraphs.front().append(u"bread", {.bold = true});
        links.front().noteRTFData = writeRtf(text);
        return true;
    };
    world.links.edit(LinkStore::Step::Ordinary, {}, makeBold);
    EXPECT_TRUE(editor()->currentStyle().bold);
    world.links.undo();
    type(" mine");
    world.links.edit(LinkStore::Step::Ordinary, {}, makeBold);
    EXPECT_EQ(document().state(), State::Conflict);
    document().resolve(Choice::KeepBoth);
    const RichText kept = readRtf(*stored().noteRTFData)->text;
    EXPECT_EQ(kept.paragraphs.front().text(), QStringLiteral("bread mine"));
    EXPECT_TRUE(kept.paragraphs.back().runs.front().style.bold);
}

TEST_F(NoteEditorTest, PlainTextWrittenByAProgramWithoutRichTextCounts)
{
    changeElsewhere("butter");
    closeWindow();
    window = editors.open(id);
    EXPECT_EQ(editor()->toPlainText(), QStringLiteral("butter"));
}

TEST_F(NoteEditorTest, EachNoteComesBackToItsPlace)
{
    const LinkItem other = world.addNote("Other", "");
    NoteEditorWindow *second = editors.open(other.id);
    window->setGeometry(40, 50, 300, 310);
    second->setGeometry(100, 110, 500, 410);
    second->close();
    closeWindow();
    window = editors.open(id);
    EXPECT_EQ(window->geometry(), QRect(40, 50, 300, 310));
    EXPECT_EQ(editors.open(other.id)->geometry(), QRect(100, 110, 500, 410));

    world.links.removeLink(other.id);
    closeWindow();
    EXPECT_FALSE(NotePlaces(world.notes()).find(other.stableId)) << "a note that is gone is forgotten";
    EXPECT_TRUE(NotePlaces(world.notes()).find(stored().stableId));
}

TEST_F(NoteEditorTest, KeepsCharactersThatAnEditorLikesToReplace)
{
    const QString special = QStringLiteral("a\u00a0b\n\tc");
    editor()->setPlainText(special);
    world.clock.advance(1s);
    EXPECT_EQ(storedText(), special);
}

TEST_F(NoteEditorTest, ShowsAChangeFromElsewhereWhileNothingIsTyped)
{
    changeElsewhere("butter");
    EXPECT_EQ(editor()->toPlainText(), QStringLiteral("butter"));
    const LinkItem before = stored();
    world.clock.advance(1s);
    EXPECT_EQ(stored(), before) << "showing is not editing";
}

TEST_F(NoteEditorTest, TypingAndAChangeFromElsewhereLoseNeither)
{
    struct Case {
        Choice choice;
        QString expected;
    };
    const Case cases[] = {
        {Choice::KeepMine, QStringLiteral("bread mine")},
        {Choice::UseTheirs, QStringLiteral("theirs")},
        {Choice::KeepBoth, QStringLiteral("bread mine\n\n— Version from elsewhere —\n\ntheirs")},
    };
    for (const Case &c : cases) {
        changeElsewhere("bread");
        type(" mine");
        changeElsewhere("theirs");
        EXPECT_EQ(document().state(), State::Conflict);
        world.clock.advance(10s);
        EXPECT_EQ(storedText(), QStringLiteral("theirs")) << "nothing is overwritten unasked";
        EXPECT_EQ(editor()->toPlainText(), QStringLiteral("bread mine"));
        document().resolve(c.choice);
        EXPECT_EQ(document().state(), State::Normal);
        EXPECT_EQ(storedText(), c.expected);
        EXPECT_EQ(editor()->toPlainText(), c.expected);
    }
}

TEST_F(NoteEditorTest, AChangeByAnotherProcessThatNobodyAnnouncedYetIsNotOverwritten)
{
    LinkList theirs = world.links.links();
    theirs.front().noteContent = QStringLiteral("theirs");
    world.defaults.otherProcessWrites(LinkStore::linksBaseKey(), encodeLinks(theirs));
    type(" mine");
    world.clock.advance(1s);
    world.defaults.announceOutsideChanges();
    EXPECT_EQ(storedText(), QStringLiteral("theirs"));
    EXPECT_EQ(document().state(), State::Conflict);
    EXPECT_EQ(editor()->toPlainText(), QStringLiteral("bread mine"));
}

TEST_F(NoteEditorTest, TheEndDuringAConflictKeepsBothTexts)
{
    const auto announced = [this] { changeElsewhere("theirs"); };
    // Nobody knows of the conflict before it comes to saving.
    const auto unannounced = [this] {
        LinkList theirs = world.links.links();
        theirs.front().noteContent = QStringLiteral("theirs");
        world.defaults.otherProcessWrites(LinkStore::linksBaseKey(), encodeLinks(theirs));
    };
    const auto close = [this] { closeWindow(); };
    const auto endOfSession = [this] { editors.finishAll(); };
    for (const std::function<void()> &change : {std::function(announced), std::function(unannounced)}) {
        for (const std::function<void()> &end : {std::function(close), std::function(endOfSession)}) {
            changeElsewhere("bread");
            window = editors.open(id);
            type(" mine");
            change();
            end();
            EXPECT_TRUE(storedText().startsWith(QStringLiteral("bread mine"))) << storedText().toStdString();
            EXPECT_TRUE(storedText().endsWith(QStringLiteral("theirs"))) << storedText().toStdString();
        }
    }
}

TEST_F(NoteEditorTest, ARemovedNoteKeepsItsTextInTheWindow)
{
    world.links.removeLink(id);
    EXPECT_EQ(document().state(), State::Gone);
    EXPECT_EQ(editor()->toPlainText(), QStringLiteral("bread"));
    closeWindow();
    EXPECT_FALSE(world.links.find(id)) << "closing alone does not bring it back";

    world.links.undo();
    window = editors.open(id);
    type("!");
    world.links.removeLink(id);
    world.clock.advance(1s);
    EXPECT_FALSE(world.links.find(id));
    closeWindow();
    EXPECT_EQ(storedText(), QStringLiteral("bread!")) << "what was typed is not lost";
}

TEST_F(NoteEditorTest, TheWindowMayCloseUnderItsContextMenu)
{
    QTimer::singleShot(0, window, [this] { closeWindow(); });
    QContextMenuEvent asked(QContextMenuEvent::Keyboard, QPoint(20, 20), editor()->mapToGlobal(QPoint(20, 20)));
    QCoreApplication::sendEvent(editor()->viewport(), &asked);
    EXPECT_TRUE(QTest::qWaitFor([this] { return window.isNull(); }));
}

TEST_F(NoteEditorTest, OneWindowPerNote)
{
    EXPECT_EQ(editors.open(id), window);
    const LinkItem other = world.addNote("Other", "");
    EXPECT_NE(editors.open(other.id), window);
    EXPECT_EQ(editors.open(QUuid::createUuid()), nullptr);
}

TEST_F(NoteEditorTest, TitleBarRenamesAndRecolours)
{
    auto *title = window->findChild<NoteTitleBarView *>();
    title->applyChanges(QStringLiteral("Shopping"), QStringLiteral("pink"));
    EXPECT_EQ(stored().name, QStringLiteral("Shopping"));
    EXPECT_EQ(stored().customIconColor, QStringLiteral("pink"));
    EXPECT_EQ(world.posted, QStringList{QStringLiteral("noteColor")});
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Shopping"));

    const LinkItem before = stored();
    title->applyChanges(QStringLiteral("Shopping"), QStringLiteral("pink"));
    title->applyChanges(QStringLiteral("  "), QStringLiteral("pink"));
    EXPECT_EQ(stored(), before);
    EXPECT_EQ(world.posted.size(), 1);
}

TEST_F(NoteEditorTest, ItsColourCanBecomeThatOfNewNotes)
{
    EXPECT_EQ(newNoteColor(world.defaults), QStringLiteral("yellow"));
    window->findChild<NoteTitleBarView *>()->applyChanges(QStringLiteral("List"), QStringLiteral("pink"));
    auto *menu = window->findChild<ColorMenu *>();
    menu->popup({});
    QAction *forNew = menu->actions().constLast();
    EXPECT_TRUE(forNew->isEnabled());
    forNew->trigger();
    menu->close();
    EXPECT_EQ(newNoteColor(world.defaults), QStringLiteral("pink"));
    EXPECT_EQ(stored().customIconColor, QStringLiteral("pink"));
    menu->popup({});
    EXPECT_FALSE(forNew->isEnabled()) << "it is that already";
}

TEST_F(NoteEditorTest, ANameBeingTypedSurvivesASaveOfTheText)
{
    auto *name = window->findChild<QLineEdit *>(QStringLiteral("noteName"));
    type("!");
    name->selectAll();
    QTest::keyClicks(name, QStringLiteral("Half a na"));
    world.clock.advance(1s);
    EXPECT_EQ(name->text(), QStringLiteral("Half a na"));
    closeWindow();
    EXPECT_EQ(stored().name, QStringLiteral("Half a na"));
}

} // namespace orvelle
