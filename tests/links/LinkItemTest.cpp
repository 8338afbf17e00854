#include "links/LinkItem.h"

#include "links/LinkColors.h"
#include "links/LinkIcons.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle {
namespace {

LinkItem item(LinkType type, const QString &path = {})
{
    return LinkItem::make(u"x"_s, path, type, {});
}

struct AddressCase {
    const char *path;
    const char *label;
    bool network;
};

TEST(LinkItem, AnAddressIsKnownByItsPrefixInAnyCase)
{
    const AddressCase cases[] = {
        {"SMB://server/share", "type.smb", true},
        {"smbx://server", "type.url", false},
        {"afp://h", "type.afp", true},
        {"NFS://h/x", "type.nfs", true},
        {"vnc://h", "type.vnc", true},
        {"ftp://h", "type.ftp", false},
        {"ftps://h", "type.ftp", false},
        {"MailTo:a@b", "type.email", false},
        {"http://h", "type.web", false},
        {"HTTPS://h", "type.web", false},
        {"tel:123", "type.url", false},
        {"smb:/", "type.url", false},
        {"", "type.url", false},
    };
    for (const AddressCase &c : cases) {
        const LinkItem link = item(LinkType::Url, QString::fromLatin1(c.path));
        EXPECT_STREQ(kindLabel(link).id, c.label) << c.path;
        EXPECT_EQ(link.isNetworkLink(), c.network) << c.path;
    }
    EXPECT_FALSE(item(LinkType::File, u"smb://h"_s).isNetworkLink());
    EXPECT_STREQ(kindLabel(item(LinkType::Note)).id, "type.note");
}

struct LookCase {
    LinkType type;
    const char *path;
    const char *symbol;
    const char *symbolWhenChosen; ///< with the custom icon "star.fill"
    const char *color;            ///< key of the colour without choice
    bool takesColor;
};

TEST(LinkItem, EachKindHasItsSymbolAndColor)
{
    const LookCase cases[] = {
        {LinkType::File, "/a", "doc", "doc", "blue", false},
        {LinkType::Folder, "/a", "folder", "folder", "orange", false},
        {LinkType::Url, "https://a", "globe", "globe", "green", true},
        {LinkType::Url, "nfs://a", "externaldrive.connected.to.line.below.fill", "star.fill", "blue", true},
        {LinkType::Group, "", "folder.fill", "star.fill", "purple", true},
        {LinkType::Note, "", "note.text", "star.fill", "yellow", true},
    };
    for (const LookCase &c : cases) {
        LinkItem link = item(c.type, QString::fromLatin1(c.path));
        EXPECT_EQ(link.sfSymbolName(), QLatin1StringView(c.symbol));
        EXPECT_EQ(displayColor(link), nsColor(QString::fromLatin1(c.color)));
        link.customIconName = u"star.fill"_s;
        link.customIconColor = u"teal"_s;
        EXPECT_EQ(link.sfSymbolName(), QLatin1StringView(c.symbolWhenChosen));
        EXPECT_EQ(displayColor(link), nsColor(QString::fromLatin1(c.color))) << "unknown colours fall back";
        link.customIconColor = u"pink"_s;
        EXPECT_EQ(displayColor(link).light == 0xff3399, c.takesColor);
    }
}

TEST(LinkItem, TablesAreComplete)
{
    EXPECT_EQ(groupIcons().size(), 48u);
    EXPECT_EQ(networkIcons().size(), 8u);
    EXPECT_EQ(noteIcons().size(), 5u);
    EXPECT_EQ(allColors().size(), 17u);
    QSet<QString> symbols;
    for (const IconChoice &icon : groupIcons())
        symbols += QString::fromLatin1(icon.symbol);
    EXPECT_EQ(symbols.size(), 48);
    EXPECT_EQ(nsColor(std::nullopt), std::nullopt);
    EXPECT_EQ(nsColor(u"Red"_s), std::nullopt);
    for (int i = 0; i < 5; ++i) {
        const auto type = static_cast<LinkType>(i);
        EXPECT_EQ(linkTypeFromRawValue(rawValue(type)), type);
    }
    EXPECT_EQ(linkTypeFromRawValue(u"link"), std::nullopt);
}

TEST(LinkItem, OnlyFilesAndFoldersBreak)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(u"there"_s));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    EXPECT_FALSE(item(LinkType::File, file.fileName()).isBroken());
    EXPECT_TRUE(item(LinkType::File, folder.filePath(u"gone"_s)).isBroken());
    EXPECT_TRUE(item(LinkType::Folder, folder.filePath(u"gone"_s)).isBroken());
    EXPECT_FALSE(item(LinkType::Url, folder.filePath(u"gone"_s)).isBroken());
}

TEST(LinkItem, TheFlagDecidesOverColorInTheMenu)
{
    LinkItem note = item(LinkType::Note);
    LinkItem group = item(LinkType::Group);
    EXPECT_TRUE(note.coloredInMenu());
    EXPECT_FALSE(group.coloredInMenu());
    note.noteColoredInMenu = false;
    group.noteColoredInMenu = true;
    EXPECT_FALSE(note.coloredInMenu());
    EXPECT_TRUE(group.coloredInMenu());
}

TEST(LinkItem, EqualityCoversTheIconBytes)
{
    const LinkItem a = item(LinkType::Url, u"https://a"_s);
    LinkItem b = a;
    EXPECT_EQ(a, b);
    b.faviconData = "png";
    EXPECT_NE(a, b);
}

} // namespace
} // namespace orvelle
