#include "links/exchange/LinkFiles.h"

#include "links/exchange/LinkExchange.h"
#include "support/Fakes.h"
#include "support/Hostile.h"

#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

constexpr Timestamp now{800'000'000};

/// A binary property list of objects given as their bytes, references one byte
/// each; the first object is the outermost.
QByteArray binaryPlist(const QList<QByteArray> &objects)
{
    QByteArray out = "bplist00";
    QByteArray table;
    for (const QByteArray &object : objects) {
        table += static_cast<char>(out.size() >> 8);
        table += static_cast<char>(out.size());
        out += object;
    }
    const auto tableAt = static_cast<quint64>(out.size());
    char trailer[32] = {0, 0, 0, 0, 0, 0, 2, 1};
    qToBigEndian<quint64>(static_cast<quint64>(objects.size()), trailer + 8);
    qToBigEndian<quint64>(tableAt, trailer + 24);
    return out + table + QByteArray(trailer, sizeof trailer);
}

QByteArray asciiObject(const QByteArray &text)
{
    return QByteArray("\x5f\x10") + static_cast<char>(text.size()) + text;
}

QByteArray xmlPlist(const QByteArray &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n" + body + "\n</plist>\n";
}

TEST(LinkFiles, ReadsEachKind)
{
    struct Case {
        const char *suffix;
        QByteArray bytes;
        const char16_t *expected; ///< "address|name", or null when it is no link
    };
    const QByteArray oneDict =
        binaryPlist({QByteArray("\xd1\x01\x02", 3), asciiObject("URL"), asciiObject("https://a.example/b")});
    // Thirty arrays, each holding the next one twice: a billion objects in 150 bytes.
    QList<QByteArray> doubled;
    for (char i = 1; i < 31; ++i)
        doubled += QByteArray("\xa2") + i + i;
    doubled += asciiObject("x");
    const Case cases[] = {
        {"desktop", "[Desktop Entry]\nType=Link\nName=A & B\nURL=https://a.example/?x=1;2\n",
         u"https://a.example/?x=1;2|A & B"},
        {"desktop", "\xef\xbb\xbf# c\n[Desktop Entry]\nType=Link\nURL=https://a.example\n", u"https://a.example|"},
        {"desktop", "[Desktop Entry]\nType=Application\nExec=true\nURL=https://a.example\n", nullptr},
        {"desktop", "[Desktop Entry]\nType=Link\nName=A\n", nullptr},
        {"desktop", "no key file", nullptr},
        {"desktop", "", nullptr},
        {"url", "[InternetShortcut]\r\nURL=https://a.example/a,b\\c\r\nIconIndex=0\r\n", u"https://a.example/a,b\\c|"},
        {"URL",
         "[{000214A0-0000-0000-C000-000000000046}]\r\nProp3=19,2\r\n[InternetShortcut]\r\nURL=https://a.example/"
         "\xfc\r\n",
         u"https://a.example/ü|"},
        {"url", "[DEFAULT]\nURL=https://a.example\n", nullptr},
        {"url", QByteArray("[InternetShortcut]\nURL=https://a\0.example\n", 40), nullptr},
        {"webloc", xmlPlist("<dict><key>URL</key><string>https://a.example/?a=1&amp;b=ü</string></dict>"),
         u"https://a.example/?a=1&b=ü|"},
        {"webloc", xmlPlist("<dict><key>URL</key><integer>7</integer></dict>"), nullptr},
        {"webloc", xmlPlist("<array><string>https://a.example</string></array>"), nullptr},
        {"webloc", xmlPlist(QByteArray("<array>").repeated(8000)), nullptr},
        {"webloc", oneDict, u"https://a.example/b|"},
        {"webloc", oneDict.left(oneDict.size() - 9), nullptr},
        {"webloc", binaryPlist(doubled), nullptr},
        {"webloc", binaryPlist({QByteArray("\xa1\0", 2)}), nullptr},
        {"webloc", "", nullptr},
        {"txt", "https://a.example", nullptr},
    };
    for (const Case &c : cases) {
        const auto content = parseLinkFile(c.bytes, QString::fromLatin1(c.suffix));
        const QString shown = content ? content->address + u'|' + content->name : u"none"_s;
        EXPECT_EQ(shown, c.expected ? QString::fromUtf16(c.expected) : u"none"_s) << c.bytes.left(80).toStdString();
    }
    // Cut at any place it is refused or read, never more.
    for (qsizetype length = 0; length < oneDict.size(); ++length)
        static_cast<void>(parseLinkFile(oneDict.left(length), u"webloc"_s));
}

class LinkFolderTest : public ::testing::Test
{
protected:
    void write(const QString &name, const QByteArray &bytes)
    {
        const QString path = folder.filePath(name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(bytes);
    }
    void writeLink(const QString &name, const QByteArray &address = "https://a.example")
    {
        write(name, "[InternetShortcut]\nURL=" + address + '\n');
    }

    static QString dump(const LinkList &links)
    {
        QStringList parts;
        for (const LinkItem &item : links)
            parts += item.isGroup() ? item.name + u'[' + dump(*item.children) + u']' : item.name;
        return parts.join(u' ');
    }
    QString read()
    {
        const auto result = readLinkFolder(folder.path(), now);
        if (!result)
            return u"error %1"_s.arg(static_cast<int>(result.error().kind));
        return u"%1 | %2 links, folded %3, left out %4, unreadable %5, other %6"_s.arg(dump(result->items))
            .arg(result->links)
            .arg(result->foldedFolders)
            .arg(result->leftOut)
            .arg(result->unreadable)
            .arg(result->otherFiles);
    }

    QTemporaryDir folder;
};

TEST_F(LinkFolderTest, MakesGroupsOfFoldersAndCountsTheRest)
{
    writeLink(u"b.url"_s);
    writeLink(u"a.URL"_s);
    write(u"c.desktop"_s, "[Desktop Entry]\nType=Link\nURL=https://a.example\nName=Named\n");
    writeLink(u"g/h/deep/deeper/d.url"_s);
    writeLink(u"g/h/e.url"_s);
    writeLink(u"bad.url"_s, "javascript:alert(1)");
    write(u"broken.webloc"_s, "nothing");
    write(u"app.desktop"_s, "[Desktop Entry]\nType=Application\nExec=x\n");
    write(u"notes.txt"_s, "text");
    write(u"huge.url"_s, QByteArray(maxLinkFileBytes + 1, 'x'));
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"empty"_s));
    EXPECT_EQ(read(), u"a b Named g[h[d e]] | 5 links, folded 2, left out 1, unreadable 3, other 1"_s);
}

TEST_F(LinkFolderTest, IsNotHeldUpByWhatIsNoFile)
{
    writeLink(u"a.url"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(folder.filePath(u"pipe.url"_s)).constData(), 0600), 0);
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"folder.url"_s));
    ASSERT_TRUE(QFile::link(folder.path(), folder.filePath(u"loop"_s)));
    ASSERT_TRUE(QFile::link(folder.filePath(u"itself.url"_s), folder.filePath(u"itself.url"_s)));
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, folder.filePath(u"endless.url"_s)));
    ASSERT_TRUE(QFile::link(folder.filePath(u"a.url"_s), folder.filePath(u"same.url"_s)));
    EXPECT_EQ(read(), u"a same | 2 links, folded 0, left out 0, unreadable 4, other 0"_s);
    // The same, chosen one by one.
    const auto chosen =
        readLinkFiles({folder.filePath(u"pipe.url"_s), folder.filePath(u"loop"_s), folder.filePath(u"a.url"_s)}, now);
    ASSERT_TRUE(chosen);
    EXPECT_EQ(dump(chosen->items), u"a");
    EXPECT_EQ(chosen->unreadable, 2);
}

TEST_F(LinkFolderTest, RefusesWhatHoldsNoLinks)
{
    EXPECT_EQ(read(), u"error %1"_s.arg(int(ForeignError::Kind::NoLinks)));
    EXPECT_FALSE(readLinkFolder(folder.filePath(u"missing"_s), now));
    WorkProgress progress;
    progress.cancelled = true;
    writeLink(u"a.url"_s);
    const auto cancelled = readLinkFolder(folder.path(), now, &progress);
    ASSERT_FALSE(cancelled);
    EXPECT_EQ(cancelled.error().kind, ForeignError::Kind::Cancelled);
}

TEST_F(LinkFolderTest, KnowsFoldersOnThisDisk)
{
    LinkList items = {foreignLink({}, u"file://"_s + folder.path(), now), foreignLink({}, u"file:///missing"_s, now)};
    FakeFileBookmarks bookmarks;
    bookmarks.missing = {u"/missing"_s};
    settleOnDisk(items, bookmarks);
    EXPECT_EQ(items[0].type, LinkType::Folder);
    EXPECT_EQ(items[0].bookmarkData, FakeFileBookmarks::bookmarkOf(folder.path()));
    EXPECT_EQ(items[1].type, LinkType::File);
    EXPECT_EQ(items[1].bookmarkData, std::nullopt);
}

} // namespace
} // namespace orvelle::test
