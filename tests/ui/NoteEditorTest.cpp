#include "links/LinkCodec.h"
#include "ui/UiWorld.h"
#include "ui/notes/NoteEditorWindow.h"
#include "ui/notes/NoteTitleBarView.h"
#include "ui/notes/QuickNoteEditorView.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>

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

    QPlainTextEdit *editor() { return window->findChild<QPlainTextEdit *>(); }
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
    EXPECT_FALSE(stored().noteRTFData.has_value());
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

TEST_F(NoteEditorTest, ClosingDuringAConflictKeepsBothTexts)
{
    type(" mine");
    changeElsewhere("theirs");
    closeWindow();
    EXPECT_TRUE(storedText().startsWith(QStringLiteral("bread mine"))) << storedText().toStdString();
    EXPECT_TRUE(storedText().endsWith(QStringLiteral("theirs"))) << storedText().toStdString();
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
