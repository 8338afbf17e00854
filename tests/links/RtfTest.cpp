#include "links/richtext/RtfReader.h"
#include "links/richtext/RtfWriter.h"
#include "support/Hostile.h"

#include <gtest/gtest.h>

#include <random>

namespace orvelle {

namespace {

/// The document in a short form: a line per paragraph with its marker, runs
/// in brackets with their style's letters.
QString outline(const RichText &text)
{
    QStringList lines;
    ListCounter counter;
    for (const RichParagraph &paragraph : text.paragraphs) {
        const int number = counter.next(paragraph.list, paragraph.level);
        QString line(paragraph.level, u'>');
        line += listMarker(paragraph.list, number, paragraph.checked);
        for (const RichRun &run : paragraph.runs) {
            QString style;
            style += run.style.bold ? QStringLiteral("b") : QString();
            style += run.style.italic ? QStringLiteral("i") : QString();
            style += run.style.underline ? QStringLiteral("u") : QString();
            style += run.style.strike ? QStringLiteral("s") : QString();
            if (run.style.size != TextSize::Normal)
                style += QString::number(static_cast<int>(run.style.size));
            if (!run.style.link.isEmpty())
                style += u'@' + run.style.link;
            line += style.isEmpty() ? run.text : QStringLiteral("[%1:%2]").arg(style, run.text);
        }
        lines += line;
    }
    return lines.join(u'|');
}

QString outlineOf(const QByteArray &rtf)
{
    const auto read = readRtf(rtf);
    return read ? outline(read->text) : QStringLiteral("error %1").arg(static_cast<int>(read.error()));
}

struct Case {
    const char *rtf;
    const char *expected;
};

void check(std::initializer_list<Case> cases)
{
    for (const Case &c : cases)
        EXPECT_EQ(outlineOf(c.rtf).toStdString(), c.expected) << c.rtf;
}

} // namespace

TEST(RtfTest, Text)
{
    check({
        {"{\\rtf1 a b}", "a b"},
        {"  {\\rtf1\\ansi a\\par b\\par}\n", "a|b|"},
        {"{\\rtf1 one\\\ntwo\\\r\nthree}", "one|two|three"},
        {"{\\rtf1 a\nb\r\nc}", "abc"},
        {"{\\rtf1 \\{\\}\\\\ a\\tab b\\line c\\~d\\emdash e}", "{}\\ a\tb\u2028c\u00a0d\u2014e"},
        {"{\\rtf1{\\info{\\title no}}{\\*\\unknown no {no}}{\\colortbl;\\red1;}yes}", "yes"},
        {"{\\rtf1{\\unknown yes}{\\*\\bkmkstart x}\\unknownword3 !}", "yes!"},
        {"{\\rtf1 a\\bin5 }}}}}b}", "ab"},
        {"{\\rtf1 a\\bin99999999999 b}", "a"},
        {"{\\rtf1 done}{\\rtf1 not}", "done"},
        {"{\\rtf1 breaks {\\b off", "breaks [b:off]"},
        {"{\\rtf1\\trowd a\\cell b\\cell\\row c}", "a\tb\t|c"},
        {"{\\rtf1 a{\\upr{no}{\\*\\ud{yes}}}b}", "ayesb"},
        {"{\\rtf1", ""},
        {"rtf1 a", "error 0"},
        {"", "error 0"},
    });
}

TEST(RtfTest, CharactersBeyondAscii)
{
    check({
        {"{\\rtf1\\u8364 ?x}", "\u20acx"},
        {"{\\rtf1\\uc0\\u8364 x}", "\u20acx"},
        {"{\\rtf1\\uc2\\u8364\\'80\\'81x{\\uc0\\u233 }\\u233 ab!}", "\u20acx\u00e9\u00e9!"},
        {"{\\rtf1\\u8364{x}}", "\u20acx"},
        {"{\\rtf1\\u-10179 ?\\u-8704 ?}", "\U0001f600"},
        {"{\\rtf1\\uc0\\u55357 \\u56832 }", "\U0001f600"},
        {"{\\rtf1 a\\u55357 ?b}", "a\ufffdb"},
        {"{\\rtf1 caf\\'e9 \\'80}", "caf\u00e9 \u20ac"},
        {"{\\rtf1\\mac\\'8e}", "\u00e9"},
        {"{\\rtf1\\ansicpg1251\\'cf\\'f0}", "\u041f\u0440"},
        {"{\\rtf1{\\fonttbl\\f0\\fcharset0 A;\\f1\\fcharset204 B;}\\f1\\'cf{\\f0\\'e9}\\'f0}", "\u041f\u00e9\u0440"},
        {"{\\rtf1{\\fonttbl{\\f0\\fcharset128 A;}}\\f0\\'93\\'fa\\'83A}", "\u65e5\u30a2"},
        {"{\\rtf1{\\fonttbl{\\f3\\fcharset2 Symbol;}}\\f3\\'b7}", "\u2022"},
        {"{\\rtf1\\ansicpg4711 a\\'e9b}", "a\ufffdb"},
        {"{\\rtf1\\ansicpg65001 \\'c3\\'a9\\'c3}", "\u00e9\ufffd"},
        {"{\\rtf1 a\\'zzb\\u0 ?\\u64976 ?}", "azzb\ufffd\ufffd"},
    });
}

TEST(RtfTest, Styles)
{
    check({
        {"{\\rtf1 a\\b b\\b0 c{\\i d}e}", "a[b:b]c[i:d]e"},
        {"{\\rtf1\\b\\i\\ul\\strike x\\plain y}", "[bius:x]y"},
        {"{\\rtf1\\ul a\\ulnone b\\uldb c\\ul0 d\\strike e\\strike0 f}", "[u:a]b[u:c]d[s:e]f"},
        {"{\\rtf1\\fs20 a\\fs24 b\\fs26 c\\fs30 d\\fs36 e\\fs96 f}", "[0:a]bc[2:d][3:e][4:f]"},
        {"{\\rtf1{\\b a}{\\b b}}", "[b:ab]"},
        {"{\\rtf1{\\field{\\*\\fldinst{HYPERLINK \"https://a.b/?c=d\"}}{\\fldrslt \\cf2 \\ul x}}y}",
         "[@https://a.b/?c=d:x]y"},
        {"{\\rtf1{\\field{\\*\\fldinst HYPERLINK \\\\o \"tip\" \"mailto:a@b\" }{\\fldrslt{\\b x}}}}",
         "[b@mailto:a@b:x]"},
        {"{\\rtf1{\\field{\\*\\fldinst HYPERLINK https://a}{\\fldrslt x}}}", "[@https://a:x]"},
        {"{\\rtf1{\\field{\\*\\fldinst PAGE}{\\fldrslt 7}}}", "7"},
        {"{\\rtf1{\\fldinst HYPERLINK \"https://a\"}{\\fldrslt x}}", "x"},
    });
}

TEST(RtfTest, Lists)
{
    const QByteArray tables =
        "{\\rtf1{\\*\\listtable{\\list\\listtemplateid1\\listhybrid{\\listlevel\\levelnfc23\\levelnfcn23"
        "{\\*\\levelmarker \\{disc\\}}{\\leveltext\\leveltemplateid1\\'01\\uc0\\u8226 ;}{\\levelnumbers;}}"
        "{\\listname "
        ";}\\listid7}{\\list{\\listlevel\\levelnfc0{\\leveltext\\'02\\'00.;}{\\levelnumbers\\'01;}}\\listid8}"
        "{\\list{\\listlevel\\levelnfc23{\\leveltext\\'01\\u9744 ?;}{\\levelnumbers;}}\\listid9}}"
        "{\\*\\listoverridetable{\\listoverride\\listid7\\listoverridecount0\\ls1}{\\listoverride\\listid8\\ls2}"
        "{\\listoverride\\listid9\\ls3}}";
    const struct {
        QByteArray rtf;
        const char *expected;
    } cases[] = {
        {tables + "\\pard\\ls1\\ilvl0 {\\listtext\t\\uc0\\u8226 \t}a\\\n{\\listtext\t\\u8226 \t}b\\\n\\pard c}",
         "\u2022a|\u2022b|c"},
        {tables + "\\pard\\ls2 a\\par b\\par\\pard c\\par\\pard\\ls2 d}", "1.a|2.b|c|1.d"},
        {tables + "\\pard\\ls1 a\\par\\pard\\ls1\\ilvl1 b\\par\\pard\\ls2\\ilvl99 c}", "\u2022a|>\u2022b|>>>>>>>>1.c"},
        {tables + "\\pard\\ls3 a\\par{\\listtext\\u9745 ?\\tab}b}", "\u2610a|\u2611b"},
        {tables + "\\pard\\ls5 {\\listtext 3.\\tab}a\\par\\pard\\ls5 b}", "1.a|\u2022b"},
        {"{\\rtf1\\pard{\\pntext\\'b7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}a\\par{\\pntext\\'b7\\tab}b\\par\\pard c}",
         "\u2022a|\u2022b|c"},
        {"{\\rtf1\\pard{\\*\\pn\\pnlvlbody\\pndec{\\pntxta.}}{\\pntext 1.\\tab}a\\par{\\pntext 2.\\tab}b}", "1.a|2.b"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(outlineOf(c.rtf).toStdString(), c.expected) << c.rtf.constData();
}

TEST(RtfTest, TellsWhatItLeavesOut)
{
    struct IncompleteCase {
        const char *rtf;
        bool incomplete;
    };
    const IncompleteCase cases[] = {
        {"{\\rtf1{\\*\\generator x;}a}", false},
        {"{\\rtf1 a{\\*\\unknown{\\pict 00ff}}b}", false},
        {"{\\rtf1 a{\\pict\\pngblip 00ff}b}", true},
        {"{\\rtf1{{\\NeXTGraphic a.png \\width1}\\'ac}}", true},
        {"{\\rtf1\\trowd a\\cell\\row}", true},
        {"{\\rtf1 a{\\footnote b}}", true},
        {"{\\rtf1 a", true},
    };
    for (const IncompleteCase &c : cases)
        EXPECT_EQ(readRtf(c.rtf)->incomplete, c.incomplete) << c.rtf;
}

/// What is written once and counts for much of the text must not be looked at,
/// or kept, again for each part of it: a small file would take hours.
TEST(RtfTest, WhatCountsForManyRunsIsKeptOnceAndBounded)
{
    const auto field = [](const QByteArray &address) {
        return "{\\rtf1{\\field{\\fldinst{HYPERLINK \"" + address + "\"}}{\\fldrslt a{\\b b}\\par c}}}";
    };
    for (const char *address : {"https://h/a", "https://h/ \\u233 ?", "https://h/\\'e9"}) {
        const auto read = readRtf(field(address));
        ASSERT_TRUE(read);
        const QList<RichParagraph> &paragraphs = read->text.paragraphs;
        ASSERT_EQ(paragraphs.size(), 2);
        ASSERT_EQ(paragraphs[0].runs.size(), 2);
        const QString &link = paragraphs[0].runs[0].style.link;
        EXPECT_TRUE(link.startsWith(u"https://h/")) << address;
        EXPECT_EQ(paragraphs[0].runs[1].style.link.constData(), link.constData()) << address;
        EXPECT_EQ(paragraphs[1].runs[0].style.link.constData(), link.constData()) << address;
    }
    const auto tooLong = readRtf(field("https://h/" + QByteArray(5000, 'a')));
    ASSERT_TRUE(tooLong);
    EXPECT_TRUE(tooLong->incomplete);
    EXPECT_EQ(outline(tooLong->text), u"a[b:b]|c");

    const QByteArray list = "{\\rtf1{\\*\\listtable{\\list{\\listlevel\\levelnfc23{\\leveltext %1\\u9744 ?}}\\listid1}}"
                            "{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}\\ls1 a}";
    EXPECT_EQ(outlineOf(QByteArray(list).replace("%1", "")), u"\u2610a");
    EXPECT_EQ(outlineOf(QByteArray(list).replace("%1", QByteArray(100, 'x'))), u"\u2022a");
}

TEST(RtfTest, RefusesWhatIsTooMuch)
{
    EXPECT_EQ(readRtf("{\\rtf1" + QByteArray(5000, '{')).error(), RtfError::TooDeep);
    EXPECT_EQ(readRtf("{\\rtf1" + QByteArray("\\\n").repeated(maxRtfParagraphs + 1)).error(), RtfError::TooLarge);
    EXPECT_EQ(readRtf("{\\rtf1" + QByteArray(maxRtfSize, 'a')).error(), RtfError::TooLarge);
}

namespace {

class RandomText
{
public:
    explicit RandomText(unsigned seed) : m_random(seed) {}

    RichText make()
    {
        RichText text;
        text.paragraphs.clear();
        for (int i = upTo(12); i >= 0; --i) {
            RichParagraph paragraph;
            for (int run = upTo(4); run > 0; --run)
                paragraph.append(words(), style());
            paragraph.setList(static_cast<ListKind>(upTo(3)), upTo(RichParagraph::maxLevel), upTo(1));
            text.paragraphs.append(paragraph);
        }
        return text;
    }

private:
    int upTo(int last) { return std::uniform_int_distribution<int>(0, last)(m_random); }

    QString words()
    {
        static const QStringList pool = {
            QStringLiteral("a"),      QStringLiteral(" "),      QStringLiteral("\\par "), QStringLiteral("{}"),
            QStringLiteral("\t"),     QStringLiteral("é"),      QStringLiteral("\u2028"), QStringLiteral("😀"),
            QStringLiteral("\u00a0"), QStringLiteral("1. "),    QStringLiteral("☐ "),     QStringLiteral("\u0007"),
            QStringLiteral("-7"),     QStringLiteral("\ufeff"), QStringLiteral(";"),      QStringLiteral("\u007f"),
            QStringLiteral("\n"),     QStringLiteral("\xd83d"), QStringLiteral("日本"),   QStringLiteral("'80"),
        };
        QString result;
        for (int i = upTo(4); i >= 0; --i)
            result += pool[upTo(static_cast<int>(pool.size()) - 1)];
        return result;
    }

    RichStyle style()
    {
        static const QStringList links = {
            QString(),
            QString(),
            QStringLiteral("https://a.b/c d?\"e\"\\f"),
            QStringLiteral("mailto:é{}@x"),
        };
        return {upTo(1) == 1, upTo(1) == 1, upTo(1) == 1, upTo(1) == 1, static_cast<TextSize>(upTo(4)), links[upTo(3)]};
    }

    std::mt19937 m_random;
};

} // namespace

TEST(RtfTest, WhatIsWrittenReadsBackAsTheSame)
{
    for (unsigned seed = 0; seed < 500; ++seed) {
        const RichText text = RandomText(seed).make();
        const QByteArray rtf = writeRtf(text);
        const auto read = readRtf(rtf);
        ASSERT_TRUE(read) << seed;
        EXPECT_FALSE(read->incomplete) << seed;
        ASSERT_EQ(outline(read->text).toStdString(), outline(text).toStdString()) << seed << rtf.constData();
        ASSERT_EQ(read->text, text) << seed;
    }
}

TEST(RtfTest, ALinkIsWrittenOnceForAllItsRuns)
{
    RichText text;
    for (const bool bold : {false, true, false})
        text.paragraphs.front().append(u"a", {.bold = bold, .link = QStringLiteral("https://h/")});
    text.paragraphs.front().append(u"b", {});
    text.paragraphs.front().append(u"c", {.link = QStringLiteral("https://i/")});
    const QByteArray rtf = writeRtf(text);
    EXPECT_EQ(rtf.count("HYPERLINK"), 2);
    EXPECT_EQ(readRtf(rtf)->text, text);
}

TEST(RtfTest, HostileFilesAreReadOrRefused)
{
    const auto count =
        test::forEachHostileFile(QStringLiteral("rtf"), [](const QString &name, const QByteArray &bytes) {
            const auto read = readRtf(bytes);
            EXPECT_EQ(read.hasValue(), !name.startsWith(QStringLiteral("bad-"))) << name.toStdString();
            if (read) {
                EXPECT_EQ(readRtf(writeRtf(read->text))->text, read->text) << name.toStdString();
            }
        });
    EXPECT_GT(count, 10);
}

TEST(RichTextTest, PlainTextCarriesTheMarkers)
{
    RichText text;
    text.paragraphs.clear();
    const auto add = [&text](const char *words, ListKind kind, int level = 0, bool checked = false) {
        RichParagraph paragraph;
        paragraph.append(QString::fromLatin1(words), {});
        paragraph.setList(kind, level, checked);
        text.paragraphs.append(paragraph);
    };
    add("head", ListKind::None);
    add("one", ListKind::Numbered);
    add("dot", ListKind::Bullet, 1);
    add("two", ListKind::Numbered);
    add("open", ListKind::Check);
    add("done", ListKind::Check, 0, true);
    add("again", ListKind::Numbered);
    EXPECT_EQ(text.toPlainText(),
              QStringLiteral("head\n1. one\n  \u2022 dot\n2. two\n\u2610 open\n\u2611 done\n1. again"));
}

TEST(RichTextTest, PlainTextComesBack)
{
    for (const char *plain : {"", "a", "\n", "a\n\nb\n", " \ta "})
        EXPECT_EQ(RichText::fromPlainText(QString::fromLatin1(plain)).toPlainText(), QString::fromLatin1(plain))
            << plain;
    EXPECT_EQ(RichText::fromPlainText(u"a\r\nb\rc\u2029d").toPlainText(), QStringLiteral("a\nb\nc\nd"));
}

TEST(RichTextTest, SameWords)
{
    EXPECT_TRUE(sameWords(u"\t\u2022\tone\n\t2.\ttwo ", u"\u2022 one\n2. two"));
    EXPECT_TRUE(sameWords(u"a\u00a0b\ufffc", u"a b"));
    EXPECT_FALSE(sameWords(u"one", u"two"));
    EXPECT_FALSE(sameWords(u"12", u"13"));
}

} // namespace orvelle
