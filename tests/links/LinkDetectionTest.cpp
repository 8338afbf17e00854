#include "links/LinkDetection.h"

#include "support/Fakes.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

TEST(LinkDetection, AddressOrPath)
{
    QTemporaryDir home;
    QDir(home.path()).mkdir(u"Documents"_s);
    FakeVolumes volumes;
    volumes.home = home.path();
    volumes.distant = {u"/usr/share"_s};
    struct Case {
        QString text;
        LinkType type;
        bool valid;
    };
    const Case cases[] = {
        {u"ftp://host/x"_s, LinkType::Url, true},
        {u"gopher://host"_s, LinkType::Url, false},
        {u"HTTPS://Host"_s, LinkType::Url, true},
        {u"mailto:a@b.c"_s, LinkType::Url, true},
        {u"tel:+33 1"_s, LinkType::Url, true},
        {u"javascript:alert(1)"_s, LinkType::Url, false},
        {u"smb://h/s"_s, LinkType::Url, true},
        {u"~/Documents"_s, LinkType::Folder, true},
        {u"~"_s, LinkType::Folder, true},
        {u"~/Documents/none"_s, LinkType::File, true},
        {u"/nowhere/at/all"_s, LinkType::File, true},
        {home.path(), LinkType::Folder, true},
        {u"/usr/share/man"_s, LinkType::File, true},
        {u"/usr/share/man/"_s, LinkType::Folder, true},
        {u"example.org"_s, LinkType::Url, false},
        {u""_s, LinkType::Url, false},
        {u" https://h"_s, LinkType::Url, false},
        {u"two words"_s, LinkType::Url, false},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(detectedType(c.text, volumes), c.type) << qPrintable(c.text);
        EXPECT_EQ(isValidLink(c.text), c.valid) << qPrintable(c.text);
    }
    EXPECT_TRUE(mayExist(u"~/Documents"_s, volumes));
    EXPECT_FALSE(mayExist(u"~/Documents/none"_s, volumes));
    EXPECT_TRUE(mayExist(u"/usr/share/none"_s, volumes)) << "nobody looks";
}

TEST(LinkDetection, NamesWhatHasNone)
{
    const std::tuple<QString, LinkType, QString> cases[] = {
        {u"https://www.example.org:8080/a?b"_s, LinkType::Url, u"www.example.org"_s},
        {u"mailto:a@b.c"_s, LinkType::Url, u"mailto:a@b.c"_s},
        {u"/a/report.tar.gz"_s, LinkType::File, u"report.tar"_s},
        {u"/a/.bashrc"_s, LinkType::File, u".bashrc"_s},
        {u"/a/folder/"_s, LinkType::Folder, u"folder"_s},
        {u"/"_s, LinkType::Folder, u"/"_s},
    };
    for (const auto &[text, type, name] : cases)
        EXPECT_EQ(defaultName(text, type), name);
}

TEST(LinkDetection, APathOnAServerBecomesItsAddress)
{
    FakeVolumes volumes;
    volumes.remote = {{u"/home/ada/nas"_s, u"nfs://nas/x"_s}};
    const auto remote = linkFromText(u"~/nas/a b.txt"_s, {}, volumes, {9});
    ASSERT_TRUE(remote);
    EXPECT_EQ(remote->type, LinkType::Url);
    EXPECT_EQ(remote->path, u"nfs://nas/x/a%20b.txt");
    EXPECT_EQ(remote->name, u"a b");
    EXPECT_EQ(remote->createdAt, Timestamp{9});
    const auto local = linkFromText(u"~/x.pdf"_s, u"Mine"_s, volumes, {9});
    ASSERT_TRUE(local);
    EXPECT_EQ(local->path, u"/home/ada/x.pdf");
    EXPECT_EQ(local->name, u"Mine");
    EXPECT_FALSE(linkFromText(u"gopher://x"_s, {}, volumes, {9}));
}

} // namespace
} // namespace orvelle::test
