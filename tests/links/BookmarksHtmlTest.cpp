#include "links/exchange/BookmarksHtml.h"

#include "links/exchange/LinkExchange.h"
#include "support/Hostile.h"

#include <QDateTime>
#include <QRandomGenerator>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

constexpr Timestamp now{800'000'000};

/// "name=address" for links, "name[...]" for groups, with blanks between.
QString dump(const LinkList &links)
{
    QStringList parts;
    for (const LinkItem &item : links)
        parts += item.name + (item.isGroup() ? u'[' + dump(*item.children) + u']' : u'=' + item.path);
    return parts.join(u' ');
}

QString read(const QByteArray &html)
{
    const auto result = readBookmarksHtml(html, now);
    if (!result)
        return u"error %1"_s.arg(static_cast<int>(result.error().kind));
    return u"%1 | folded %2 left out %3"_s.arg(dump(result->items)).arg(result->foldedFolders).arg(result->leftOut);
}

QByteArray fixture(const char *name)
{
    QFile file(QStringLiteral(ORVELLE_SOURCE_DIR "/tests/hostile/bookmarks/") + QString::fromLatin1(name));
    EXPECT_TRUE(file.open(QFile::ReadOnly));
    return file.readAll();
}

QString utcText(const std::optional<Timestamp> &when)
{
    return when ? when->toDateTime().toString(Qt::ISODate) : u"none"_s;
}

TEST(BookmarksHtml, ReadsTheFilesOfTwoFamiliesOfBrowsers)
{
    EXPECT_EQ(read(fixture("ok-bar-and-other.html")),
              u"Bookmarks bar[Tides & weather=https://harbour-tides.example/today?port=12&unit=m "
              "Sourdough, step by step=https://bread.example/sourdough "
              "Allotment[Beans “Café”=https://seeds.example/beans/caf%C3%A9 "
              "Slugs=https://slugs.example/ Aphids=https://aphids.example/ Later[]] "
              "www.quiet-corner.example=https://www.quiet-corner.example/a/b] Mobile[] "
              "Shed roof=/home/ada/Plans/shed roof.pdf Write to Ada=mailto:ada@mail.example?subject=Hello%20there"
              " | folded 1 left out 1"_s);
    EXPECT_EQ(
        read(fixture("ok-menu-and-toolbar.html")),
        u"Departures=https://trains.example/board "
        "Reading[Essays <weekly> — vol. 3=https://essays.example/?a=1&b=2&copy=3 News=https://news.example/] "
        "Bookmarks Toolbar[Map=https://maps.example/#12/48.1/11.5] Other Bookmarks[Mirror=ftp://mirror.example/pub/]"
        " | folded 0 left out 2"_s);
}

TEST(BookmarksHtml, KeepsSaneDatesOnly)
{
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"ADD_DATE=\"1577880030\" LAST_MODIFIED=\"1577880031\"", "2020-01-01T12:00:30Z", "2020-01-01T12:00:31Z"},
        {"add_date=1577880030", "2020-01-01T12:00:30Z", "2020-01-01T12:00:30Z"},
        {"LAST_MODIFIED=1577880030", "2020-01-01T12:00:30Z", "2020-01-01T12:00:30Z"},
        {"ADD_DATE=1577880030000", "2020-01-01T12:00:30Z", "2020-01-01T12:00:30Z"},
        {"ADD_DATE=1577880030000000", "2020-01-01T12:00:30Z", "2020-01-01T12:00:30Z"},
        {"ADD_DATE=13222353630000000", "2020-01-01T12:00:30Z", "2020-01-01T12:00:30Z"},
        {"ADD_DATE=0", "now", "now"},
        {"ADD_DATE=-5", "now", "now"},
        {"ADD_DATE=99999999999999999999", "now", "now"},
        {"ADD_DATE=nan", "now", "now"},
        {"ADD_DATE=yesterday", "now", "now"},
        {"", "now", "now"},
    };
    const auto expected = [](const char *text) {
        return qstrcmp(text, "now") == 0 ? utcText(now) : QString::fromLatin1(text);
    };
    for (const auto &[attributes, created, modified] : cases) {
        const auto result =
            readBookmarksHtml("<DL><DT><A HREF='https://a.example' " + QByteArray(attributes) + ">a</A></DL>", now);
        ASSERT_TRUE(result) << attributes;
        const LinkItem &item = result->items.constFirst();
        EXPECT_EQ(utcText(item.createdAt), expected(created)) << attributes;
        EXPECT_EQ(utcText(item.modifiedAt), expected(modified)) << attributes;
    }
}

TEST(BookmarksHtml, UnderstandsSloppyFiles)
{
    const std::pair<QByteArray, const char16_t *> cases[] = {
        {"<dl><dt><a href=https://a.example>A</a></dt></dl>", u"A=https://a.example"},
        {"<DL><DT><A HREF=https://a.example>A<DT><A HREF=https://b.example>B</DL>",
         u"A=https://a.example B=https://b.example"},
        {"<DL><H3>F</H3><DL><A HREF=https://a.example>A</A></DL><A HREF=https://b.example>B</A></DL>",
         u"F[A=https://a.example] B=https://b.example"},
        {"<DL><DT><H3>F<DL><DT><A HREF=https://a.example>A</DL><DT><A HREF=https://b.example>B</DL>",
         u"F[A=https://a.example] B=https://b.example"},
        {"<DL><DT><H3>F</H3><DT><A HREF=https://a.example>A</A></DL>", u"F[] A=https://a.example"},
        {"<DL><DT><H3></H3><DL></DL></DL>", u"foreign.unnamedFolder[]"},
        {"<DL><DT><A HREF=' https://a.\n example '> two\n   lines </A></DL>", u"two lines=https://a. example"},
        {"<DL><DT><A HREF=https://a.example>&#xFEFF; marked</A></DL>", u"marked=https://a.example"},
        {"<DL><DT><A HREF=https://a.example><b>Bold</b> &amp; <i>plain</i></A></DL>",
         u"Bold & plain=https://a.example"},
        {"<DL><DT><A HREF='/relative'>r</A><DT><A>no address</A><DT><A HREF='C:\\x'>drive</A></DL>", u""},
        {"<DL><DT><A HREF='https://a.example'>A</A>", u"A=https://a.example"},
        {"<DL><DT><A HREF='file:///srv/music//'>Music</A><DT><A HREF='file://host/share'>Share</A></DL>",
         u"Music=/srv/music Share=file://host/share"},
        {"<DL><DT><A HREF='file:////srv/plan.txt'>Plan</A></DL>", u"Plan=/srv/plan.txt"},
    };
    for (const auto &[html, expected] : cases) {
        const auto result = readBookmarksHtml(html, now);
        ASSERT_TRUE(result) << html.toStdString();
        EXPECT_EQ(dump(result->items), QString::fromUtf16(expected)) << html.toStdString();
    }
}

TEST(BookmarksHtml, DecodesByWhatTheBytesAre)
{
    const QByteArray before = "<META CONTENT='text/html; charset=";
    const QByteArray after = "'><DL><DT><A HREF=https://a.example>";
    const std::tuple<const char *, QByteArray, const char16_t *> cases[] = {
        {"UTF-8", "D\xc3\xbcne", u"Düne"},           {"ISO-8859-1", "D\xc3\xbcne", u"Düne"},
        {"ISO-8859-1", "D\xfcne", u"Düne"},          {"windows-1251", "\xcc\xe8\xf0", u"Мир"},
        {"no-such-thing", "D\xfcne", u"Düne"},       {"UTF-16", "D\xc3\xbcne\xff", u"Düne\ufffd"},
        {"utf-8", "D\xc3\xbcne\xff", u"Düne\ufffd"}, {"", "\x93quoted\x94", u"“quoted”"},
    };
    for (const auto &[charset, name, expected] : cases) {
        const auto result = readBookmarksHtml(before + charset + after + name + "</A></DL>", now);
        ASSERT_TRUE(result);
        EXPECT_EQ(result->items.constFirst().name, QString::fromUtf16(expected)) << charset;
    }
}

TEST(ForeignLinks, LeavesOutWhatRunsCodeOrOnlyABrowserKnows)
{
    const char16_t *unusable[] = {u"javascript:alert(1)",
                                  u"JaVaScRiPt:alert(1)",
                                  u" \t\njavascript:x",
                                  u"java\nscript:x",
                                  u"\u0001javascript:x",
                                  u"\u00a0javascript:x",
                                  u"\u200bjavascript:x",
                                  u"java\u00adscript:x",
                                  u"javascript :x",
                                  u"data:text/html,x",
                                  u"DATA:;base64,x",
                                  u"vbscript:x",
                                  u"place:sort=8",
                                  u"about:blank",
                                  u"chrome://settings",
                                  u"moz-extension://x/y",
                                  u"view-source:https://",
                                  u"",
                                  u"   ",
                                  u"#top",
                                  u"/index.html"};
    for (const char16_t *address : unusable)
        EXPECT_EQ(usableAddress(QString::fromUtf16(address)), std::nullopt)
            << QString::fromUtf16(address).toStdString();
    const std::pair<const char16_t *, const char16_t *> usable[] = {
        {u" https://a.example/x y ", u"https://a.example/x y"},
        {u"https://a.example/?q=javascript:x", u"https://a.example/?q=javascript:x"},
        {u"www.a.example", u"www.a.example"},
        {u"smb://server/share", u"smb://server/share"},
        {u"javascripts.example/data:1", u"javascripts.example/data:1"},
        {u"magnet:?xt=urn:x", u"magnet:?xt=urn:x"},
        {u"https://a.exa\nmple/", u"https://a.example/"}};
    for (const auto &[address, kept] : usable)
        EXPECT_EQ(usableAddress(QString::fromUtf16(address)), QString::fromUtf16(kept));
}

TEST(BookmarksHtml, RefusesOrAcceptsHostileFiles)
{
    const qsizetype count = forEachHostileFile(u"bookmarks"_s, [](const QString &name, const QByteArray &bytes) {
        EXPECT_EQ(bool(readBookmarksHtml(bytes, now)), name.startsWith(u"ok-")) << name.toStdString();
    });
    EXPECT_GE(count, 10);
}

TEST(BookmarksHtml, IsNotHeldUpByAbsurdNesting)
{
    // Each line beats another guard: the glance before, the parser's own memory, the walk.
    const QByteArray patterns[] = {"<DL>",          "<DL><DT><H3>x</H3>",   "<b a%1>", "<div>",
                                   "<a href=x><p>", "<table><td>",          "<svg>",   "</b><b><p>",
                                   "<template>",    "<object><dl></object>"};
    for (const QByteArray &pattern : patterns) {
        QByteArray html = "<DL>";
        for (int i = 0; html.size() < 1'000'000; ++i)
            html += QByteArray(pattern).replace("%1", QByteArray::number(i));
        const auto result = readBookmarksHtml(html, now);
        EXPECT_TRUE(result || result.error().kind != ForeignError::Kind::Cancelled) << pattern.toStdString();
    }
    QByteArray deep;
    for (int i = 0; i < 10'000; ++i)
        deep += "<DL><DT><H3>f</H3>";
    EXPECT_EQ(read(deep + "<DL><DT><A HREF=https://a.example>A</A>"),
              u"f[f[A=https://a.example]] | folded 9998 left out 0"_s);
}

TEST(BookmarksHtml, HoldsItsLimits)
{
    EXPECT_EQ(read(QByteArray(maxForeignBytes + 1, ' ')), u"error %1"_s.arg(int(ForeignError::Kind::TooLarge)));
    const QByteArray link = "<DT><A HREF=https://a.example>a</A>";
    EXPECT_EQ(read("<DL>" + link.repeated(maxForeignItems + 1)),
              u"error %1"_s.arg(int(ForeignError::Kind::TooManyItems)));
}

TEST(BookmarksHtml, EndsWhenCancelled)
{
    WorkProgress progress;
    progress.cancelled = true;
    const auto result = readBookmarksHtml("<DL><DT><A HREF=https://a.example>a</A></DL>", now, &progress);
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().kind, ForeignError::Kind::Cancelled);
}

QString randomText(QRandomGenerator &random, QStringView alphabet)
{
    QString text;
    for (int length = random.bounded(1, 12); length > 0; --length)
        text += alphabet.at(random.bounded(static_cast<int>(alphabet.size())));
    return text;
}

LinkList randomTree(QRandomGenerator &random, int level)
{
    LinkList links;
    for (int count = random.bounded(5); count > 0; --count) {
        const QString name = foreignName(u'x' + randomText(random, u"a<>&\"'; é—ß\u00a0/=-!]amp;"));
        const Timestamp date = Timestamp::fromUnixSeconds(random.bounded(700'000'000, 2'000'000'000));
        LinkItem item;
        switch (random.bounded(level < 2 ? 4 : 3)) {
        case 0:
            item = LinkItem::make(name, u"https://a.example/"_s + randomText(random, u"a<>&\"'%;#?=é+"), LinkType::Url,
                                  date);
            break;
        case 1:
            item = LinkItem::make(name, u"/srv/"_s + randomText(random, u"a<>&\"'%;#?=é+ \n"), LinkType::File, date);
            break;
        case 2:
            item = LinkItem::make(name, u"/srv/d"_s + randomText(random, u"a%20#?é "), LinkType::Folder, date);
            break;
        default:
            item = LinkItem::make(name, {}, LinkType::Group, date);
            item.children = randomTree(random, level + 1);
        }
        item.modifiedAt = date + 5;
        links += item;
    }
    return links;
}

/// Without what a bookmark file does not carry.
LinkList bare(LinkList links)
{
    for (LinkItem &item : links) {
        item.id = {};
        item.stableId.clear();
        if (item.children)
            item.children = bare(*item.children);
    }
    return links;
}

TEST(BookmarksHtml, ReadsBackWhatItWrote)
{
    for (quint32 seed = 0; seed < 300; ++seed) {
        QRandomGenerator random(seed);
        LinkList tree = randomTree(random, 0);
        tree += LinkItem::make(u"last"_s, u"https://z.example"_s, LinkType::Url, Timestamp::fromUnixSeconds(1e9));
        const auto again = readBookmarksHtml(writeBookmarksHtml(tree, u"<My> links"_s).html, now);
        ASSERT_TRUE(again) << "seed " << seed;
        EXPECT_EQ(again->leftOut + again->foldedFolders, 0);
        ASSERT_EQ(bare(again->items), bare(tree)) << "seed " << seed;
    }
}

TEST(BookmarksHtml, CountsTheNotesItDoesNotWrite)
{
    LinkItem group = LinkItem::make(u"g"_s, {}, LinkType::Group, Timestamp::distantPast());
    group.children = {LinkItem::make(u"n"_s, {}, LinkType::Note, now),
                      LinkItem::make(u"l"_s, u"https://l"_s, LinkType::Url, now)};
    const WrittenBookmarks written =
        writeBookmarksHtml({group, LinkItem::make(u"m"_s, {}, LinkType::Note, now)}, u"t"_s);
    EXPECT_EQ(written.notesLeftOut, 2);
    EXPECT_EQ(written.links, 1);
    EXPECT_FALSE(written.html.contains("<H3 ADD_DATE"));
}

TEST(ForeignLinks, ArrangesWithoutLosingFolders)
{
    const std::pair<QByteArray, const char16_t *> cases[] = {
        {"<A HREF=https://a.example>a</A>", u"a=https://a.example"},
        {"<H3>f</H3><DL><H3>g</H3><DL><A HREF=https://a.example>a</A></DL></DL>", u"f[g[a=https://a.example]]"},
        {"<A HREF=https://a.example>a</A><H3>f</H3><DL><A HREF=https://b.example>b</A></DL>",
         u"T[a=https://a.example f[b=https://b.example]]"},
        {"<H3>f</H3><DL><H3>g</H3><DL><A HREF=https://a.example>a</A></DL></DL><A HREF=https://b.example>b</A>"
         "<A HREF=https://c.example>c</A><H3>e</H3><DL></DL>",
         u"f[g[a=https://a.example]] T[b=https://b.example c=https://c.example] e[]"},
    };
    for (const auto &[html, expected] : cases) {
        const auto result = readBookmarksHtml("<DL>" + html + "</DL>", now);
        ASSERT_TRUE(result);
        EXPECT_EQ(dump(arranged(*result, u"T"_s, now)), QString::fromUtf16(expected));
    }
}

} // namespace
} // namespace orvelle::test
