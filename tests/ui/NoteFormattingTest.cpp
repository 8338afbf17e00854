#include "ui/notes/NoteFormatting.h"

#include "links/richtext/RtfReader.h"
#include "links/richtext/RtfWriter.h"
#include "ui/notes/NoteFormatBar.h"
#include "ui/notes/RichTextEdit.h"
#include "ui/notes/RichTextMime.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocument>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <random>

namespace orvelle {

namespace {

/// A text in short: a line per paragraph with its level and marker, formatted
/// runs in brackets. "[b:x]" is bold, "[@https://a:x]" linked, "[+2:x]" larger.
QString outline(const RichText &text)
{
    QStringList lines;
    ListCounter counter;
    for (const RichParagraph &paragraph : text.paragraphs) {
        const int number = counter.next(paragraph.list, paragraph.level);
        QString line = QString(paragraph.level, u'>') + listMarker(paragraph.list, number, paragraph.checked);
        for (const RichRun &run : paragraph.runs) {
            QString style;
            const RichStyle &s = run.style;
            for (const auto &[on, letter] :
                 {std::pair(s.bold, u'b'), {s.italic, u'i'}, {s.underline, u'u'}, {s.strike, u's'}})
                style += on ? QString(QChar(letter)) : QString();
            if (s.size != TextSize::Normal)
                style += QStringLiteral("%1").arg(static_cast<int>(s.size) - 1);
            if (!s.link.isEmpty())
                style += u'@' + s.link;
            line += style.isEmpty() ? run.text : QStringLiteral("[%1:%2]").arg(style, run.text);
        }
        lines += line;
    }
    return lines.join(u'|');
}

class NoteFormattingTest : public testing::Test
{
protected:
    void SetUp() override
    {
        auto *column = new QVBoxLayout(&window);
        column->addWidget(bar);
        column->addWidget(editor);
        window.resize(500, 400);
        window.show();
        window.activateWindow();
        editor->setFocus();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    void type(const char *text) { QTest::keyClicks(editor, QString::fromUtf8(text)); }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(editor, static_cast<Qt::Key>(key), modifiers);
    }
    void select(int from, int to)
    {
        QTextCursor cursor = editor->textCursor();
        cursor.setPosition(from);
        cursor.setPosition(to, QTextCursor::KeepAnchor);
        editor->setTextCursor(cursor);
    }
    std::string shown() const { return outline(editor->richText()).toStdString(); }
    bool isChecked(const char *action) const
    {
        return bar->findChild<QAction *>(QString::fromLatin1(action))->isChecked();
    }

    QWidget window;
    RichTextEdit *editor = new RichTextEdit(&window);
    NoteFormatBar *bar = new NoteFormatBar(*editor, &window);
};

constexpr auto ctrl = Qt::ControlModifier;
constexpr auto ctrlShift = Qt::ControlModifier | Qt::ShiftModifier;

} // namespace

TEST_F(NoteFormattingTest, KeysFormatTheSelectionAndWhatIsTypedNext)
{
    struct Case {
        int key;
        Qt::KeyboardModifiers modifiers;
        const char *action;
        const char *expected;
    };
    const Case cases[] = {
        {Qt::Key_B, ctrl, "bold", "one [b:two]"},
        {Qt::Key_I, ctrl, "italic", "one [i:two]"},
        {Qt::Key_U, ctrl, "underline", "one [u:two]"},
        {Qt::Key_X, ctrlShift, "strikethrough", "one [s:two]"},
    };
    for (const Case &c : cases) {
        editor->clear();
        editor->setCurrentCharFormat({});
        type("one ");
        press(c.key, c.modifiers);
        type("two");
        EXPECT_EQ(shown(), c.expected);
        EXPECT_TRUE(isChecked(c.action));
        select(0, 3);
        EXPECT_FALSE(isChecked(c.action)) << "the state follows the cursor";
        select(4, 7);
        press(c.key, c.modifiers);
        EXPECT_EQ(shown(), "one two");
        press(Qt::Key_Z, ctrl);
        EXPECT_EQ(shown(), c.expected);
        press(Qt::Key_Z, ctrlShift);
        EXPECT_EQ(shown(), "one two");
    }
}

TEST_F(NoteFormattingTest, Sizes)
{
    type("ab");
    select(0, 1);
    press(Qt::Key_Plus, ctrl);
    press(Qt::Key_Plus, ctrl);
    EXPECT_EQ(shown(), "[2:a]b");
    for (int i = 0; i < 9; ++i)
        press(Qt::Key_Plus, ctrl);
    EXPECT_EQ(shown(), "[3:a]b");
    for (int i = 0; i < 9; ++i)
        press(Qt::Key_Minus, ctrl);
    EXPECT_EQ(shown(), "[-1:a]b");
}

TEST_F(NoteFormattingTest, ListsGrowAndEndByTyping)
{
    type("- one");
    EXPECT_EQ(shown(), "•one");
    press(Qt::Key_Return);
    type("two");
    press(Qt::Key_Return);
    press(Qt::Key_Tab);
    type("in");
    EXPECT_EQ(shown(), "•one|•two|>•in");
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    EXPECT_EQ(shown(), "•one|•two|>•in|•");
    press(Qt::Key_Return);
    EXPECT_EQ(shown(), "•one|•two|>•in|");
    type("1. a");
    press(Qt::Key_Return);
    type("b");
    press(Qt::Key_Home);
    press(Qt::Key_Backspace);
    EXPECT_EQ(shown(), "•one|•two|>•in|1.a|b");
    press(Qt::Key_8, ctrlShift);
    EXPECT_EQ(shown(), "•one|•two|>•in|1.a|•b");
    EXPECT_TRUE(isChecked("list.bullet"));
    press(Qt::Key_9, ctrlShift);
    press(Qt::Key_Return, ctrl);
    EXPECT_EQ(shown(), "•one|•two|>•in|1.a|☑b");
    press(Qt::Key_End);
    press(Qt::Key_Return);
    EXPECT_EQ(shown(), "•one|•two|>•in|1.a|☑b|☐") << "a new item is open";
    editor->selectAll();
    press(Qt::Key_7, ctrlShift);
    press(Qt::Key_7, ctrlShift);
    EXPECT_EQ(shown(), "one|two|in|a|b|");
}

TEST_F(NoteFormattingTest, BeginningAListByTypingCanBeUndone)
{
    type("- ");
    EXPECT_EQ(shown(), "•");
    press(Qt::Key_Z, ctrl);
    EXPECT_EQ(shown(), "- ");
}

TEST_F(NoteFormattingTest, ABoxIsTickedByAClick)
{
    type("[] a");
    const QRectF box = ListMarkers(*editor->document()).markerRect(editor->document()->firstBlock());
    const QPoint inside = box.center().toPoint();
    QTest::mouseClick(editor->viewport(), Qt::LeftButton, {}, inside);
    EXPECT_EQ(shown(), "☑a");
    QTest::mouseClick(editor->viewport(), Qt::LeftButton, {}, inside + QPoint(static_cast<int>(box.width()), 0));
    EXPECT_EQ(shown(), "☑a") << "the text is not the box";
    QTest::mouseClick(editor->viewport(), Qt::LeftButton, {}, inside);
    EXPECT_EQ(shown(), "☐a");
    press(Qt::Key_Z, ctrl);
    EXPECT_EQ(shown(), "☑a");
}

TEST_F(NoteFormattingTest, Links)
{
    type("see here now");
    select(6, 6);
    setLink(editor->textCursor(), QStringLiteral("https://a.b/"));
    EXPECT_EQ(shown(), "see [@https://a.b/:here] now");
    EXPECT_EQ(linkAt(editor->textCursor()), QStringLiteral("https://a.b/"));
    setLink(editor->textCursor(), QStringLiteral("https://c.d/"));
    EXPECT_EQ(shown(), "see [@https://c.d/:here] now");
    select(8, 8);
    type("x");
    EXPECT_EQ(shown(), "see [@https://c.d/:here]x now") << "what is typed behind a link is no part of it";
    select(6, 6);
    type("y");
    EXPECT_EQ(shown(), "see [@https://c.d/:heyre]x now");
    setLink(editor->textCursor(), {});
    EXPECT_EQ(shown(), "see heyrex now");
    editor->clear();
    setLink(editor->textCursor(), QStringLiteral("mailto:a@b.c"));
    EXPECT_EQ(shown(), "[@mailto:a@b.c:mailto:a@b.c]");
}

TEST_F(NoteFormattingTest, ATypedAddressBecomesALinkAndUndoTakesThatBack)
{
    type("to https://a.b/c, ");
    EXPECT_EQ(shown(), "to [@https://a.b/c:https://a.b/c], ");
    press(Qt::Key_Z, ctrl);
    EXPECT_EQ(shown(), "to https://a.b/c, ");
    editor->clear();
    type("www.a.b");
    press(Qt::Key_Return);
    type("javascript:alert(1) file:///etc/passwd x");
    EXPECT_EQ(shown(), "[@https://www.a.b:www.a.b]|javascript:alert(1) file:///etc/passwd x");
}

TEST_F(NoteFormattingTest, CtrlAndAClickOpenALink)
{
    QSignalSpy activated(editor, &RichTextEdit::linkActivated);
    RichText text;
    text.paragraphs.front().append(u"linked words", {.link = QStringLiteral("https://a.b/")});
    editor->showText(text);
    const QPoint inside = editor->cursorRect().center() + QPoint(20, 0);
    QTest::mouseClick(editor->viewport(), Qt::LeftButton, {}, inside);
    EXPECT_EQ(activated.size(), 0);
    QTest::mouseClick(editor->viewport(), Qt::LeftButton, ctrl, inside);
    ASSERT_EQ(activated.size(), 1);
    EXPECT_EQ(activated[0][0].toString(), QStringLiteral("https://a.b/"));
}

TEST_F(NoteFormattingTest, PasteKeepsWhatNotesOffer)
{
    struct Case {
        const char *html;
        const char *expected;
    };
    const Case cases[] = {
        {"<p>a <b>b</b> <i>c</i> <u>d</u> <s>e</s></p>", "a [b:b] [i:c] [u:d] [s:e]"},
        {"<a href='https://a.b/?x'>l</a>", "[@https://a.b/?x:l]"},
        {"<a href='javascript:alert(1)'>l</a><a href='/rel'>m</a><a href='file:///etc/passwd'>n</a>", "lmn"},
        {"<ul><li>a<ul><li>b</li></ul></li></ul><ol><li>c</li><li>d</li></ol>", "•a|>•b|1.c|2.d"},
        {"x<img src='file:///etc/hostname'><img src='https://127.0.0.1/'>y<script>alert(1)</script>", "xy"},
        {"<span style='color:red;font-family:Courier;font-size:40px'>a</span>", "[3:a]"},
        {"<html><head><link rel='stylesheet' href='file:///dev/zero'></head><body><p>a</p></body></html>", "a"},
        {"<span style='font-size:14px'>a</span>", "a"},
    };
    for (const Case &c : cases) {
        auto *data = new QMimeData;
        data->setHtml(QString::fromUtf8(c.html));
        data->setText(QStringLiteral("plain"));
        QApplication::clipboard()->setMimeData(data);
        editor->clear();
        editor->setCurrentCharFormat({});
        press(Qt::Key_V, ctrl);
        EXPECT_EQ(shown(), c.expected) << c.html;
        editor->clear();
        editor->pastePlain();
        EXPECT_EQ(shown(), "plain");
    }
}

TEST_F(NoteFormattingTest, PastedRichTextLosesUnsafeLinksAndTheLastLineEnd)
{
    QMimeData data;
    data.setData(QStringLiteral("text/rtf"),
                 "{\\rtf1\\b a\\b0{\\field{\\*\\fldinst HYPERLINK \"javascript:x\"}{\\fldrslt l}}\\par}");
    EXPECT_EQ(outline(*richTextOf(data)).toStdString(), "[b:a]l");

    QMimeData huge;
    huge.setText(QString(maxPasteLength + 1, u'a'));
    EXPECT_FALSE(richTextOf(huge));
    QMimeData deep;
    deep.setHtml(QStringLiteral("<ul><li>").repeated(5000) + u'a');
    deep.setText(QStringLiteral("plain"));
    EXPECT_EQ(outline(*richTextOf(deep)).toStdString(), "plain");
    QMimeData picture;
    picture.setImageData(QImage(2, 2, QImage::Format_RGB32));
    EXPECT_FALSE(editor->canPaste() && richTextOf(picture));
}

TEST_F(NoteFormattingTest, CopyAndPasteInsideKeepsEverything)
{
    type("[] a");
    press(Qt::Key_Return);
    press(Qt::Key_B, ctrl);
    type("b");
    const std::string before = shown();
    editor->selectAll();
    press(Qt::Key_C, ctrl);
    press(Qt::Key_Delete);
    press(Qt::Key_9, ctrlShift);
    ASSERT_EQ(shown(), "");
    press(Qt::Key_V, ctrl);
    EXPECT_EQ(shown(), before);
    const QMimeData *data = QApplication::clipboard()->mimeData();
    EXPECT_EQ(data->text(), QStringLiteral("☐ a\n☐ b"));
    EXPECT_TRUE(data->html().contains(QStringLiteral("<ul")));
    select(1, 1);
    select(0, 1);
    press(Qt::Key_C, ctrl);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("a")) << "words of an item are words";
}

TEST_F(NoteFormattingTest, EveryTextComesBackFromTheEditor)
{
    std::mt19937 random(7);
    const auto upTo = [&random](int last) { return std::uniform_int_distribution<int>(0, last)(random); };
    const QStringList pool = {QStringLiteral("a"),       QStringLiteral("b c "),    QStringLiteral("\t"),
                              QStringLiteral("é\u00a0"), QStringLiteral("\u2028x"), QStringLiteral("😀"),
                              QStringLiteral("☐ "),      QStringLiteral("\ufeff"),  QStringLiteral("日本")};
    for (int round = 0; round < 200; ++round) {
        RichText text;
        text.paragraphs.clear();
        for (int i = upTo(10); i >= 0; --i) {
            RichParagraph paragraph;
            for (int run = upTo(4); run > 0; --run)
                paragraph.append(pool[upTo(8)], {upTo(1) == 1, upTo(1) == 1, upTo(1) == 1, upTo(1) == 1,
                                                 static_cast<TextSize>(upTo(4)),
                                                 upTo(2) ? QString() : QStringLiteral("https://a/%1").arg(upTo(1))});
            paragraph.setList(static_cast<ListKind>(upTo(3)), upTo(8), upTo(1) == 1);
            text.paragraphs += paragraph;
        }
        QTextDocument document;
        setRichText(document, text);
        ASSERT_EQ(outline(richTextOf(document)).toStdString(), outline(text).toStdString());
        ASSERT_EQ(richTextOf(document), text);
        ASSERT_EQ(readRtf(writeRtf(richTextOf(document)))->text, text);
    }
}

} // namespace orvelle
