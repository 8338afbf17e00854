#include "links/LinkCodec.h"

#include "base/Uuid.h"
#include "support/Hostile.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

LinkItem decodedItem(const QByteArray &json)
{
    const auto item = decodeLink(json);
    EXPECT_TRUE(item) << json.constData();
    return item ? *item : LinkItem{};
}

const QByteArray everyKey =
    R"({"id":"6F9619FF-8B86-D011-B42D-00CF4FC964FF","name":"G","path":"","type":"group","children":[],)"
    R"("bookmarkData":"AAEC/w==","customIconName":"star.fill","customIconColor":"pink",)"
    R"("stableId":"0f9619ff","createdAt":785000000.123456,"modifiedAt":-63114076800,)"
    R"("noteContent":"t\u0000","noteRTFData":"","noteColoredInMenu":false,"contentModifiedAt":0.1})";

TEST(LinkCodec, WritesTheKeysInTheirOrder)
{
    LinkItem item = decodedItem(everyKey);
    EXPECT_EQ(item.bookmarkData, QByteArray("\x00\x01\x02\xff", 4));
    EXPECT_EQ(item.modifiedAt, Timestamp::distantPast());
    EXPECT_EQ(item.noteContent, QString(u"t"_s + QChar(0)));
    EXPECT_EQ(item.children, LinkList());
    EXPECT_EQ(item.noteColoredInMenu, false);
    item.faviconData = "png";
    EXPECT_EQ(encodeLink(item), everyKey);
}

TEST(LinkCodec, AbsentValuesHaveNoKey)
{
    LinkItem item = LinkItem::make(u"a/b"_s, u"https://a"_s, LinkType::Url, {1});
    item.createdAt.reset();
    EXPECT_EQ(encodeLink(item), R"({"id":")" + uuidText(item.id).toLatin1() +
                                    R"(","name":"a/b","path":"https://a","type":"url","stableId":")" +
                                    item.stableId.toLatin1() + R"(","modifiedAt":1})");
}

TEST(LinkCodec, OldItemsGetIdentitiesButNoDates)
{
    LinkCodecNotes notes;
    const auto links = decodeLinks(R"([{"name":"a","path":"p","type":"file"}])", &notes);
    ASSERT_TRUE(links);
    const LinkItem &item = links->first();
    EXPECT_FALSE(item.id.isNull());
    EXPECT_TRUE(parseUuid(item.stableId)) << qPrintable(item.stableId);
    EXPECT_TRUE(notes.madeStableIds);
    EXPECT_EQ(item.createdAt, std::nullopt);
    EXPECT_EQ(item.modifiedAt, std::nullopt);
    EXPECT_EQ(item.children, std::nullopt);

    ASSERT_TRUE(decodeLinks(R"([{"name":"a","path":"p","type":"file","stableId":""}])", &notes));
    EXPECT_FALSE(notes.madeStableIds) << "an empty one is the migration's work";
}

TEST(LinkCodec, FirstOfRepeatedKeysCounts)
{
    const LinkItem item =
        decodedItem(R"({"type":"note","name":null,"name":"one","name":"two","path":"p","type":"nonsense","x":[{}]})");
    EXPECT_EQ(item.name, u"one");
    EXPECT_EQ(item.type, LinkType::Note);
}

TEST(LinkCodec, AnErrorNamesThePlaceButNoText)
{
    const std::pair<const char *, QString> cases[] = {
        {R"([{"name":"secret","path":"p","type":"x"}])", u"[0].type"_s},
        {R"([{"name":"g","path":"","type":"group","children":[{"name":"a","path":"b","type":"url"},{"name":"n"}]}])",
         u"[0].children[1].path"_s},
        {"{}", u"the root"_s},
    };
    for (const auto &[json, place] : cases) {
        const auto links = decodeLinks(json);
        ASSERT_FALSE(links) << json;
        EXPECT_TRUE(links.error().reason.endsWith(place)) << qPrintable(links.error().reason);
        EXPECT_FALSE(links.error().reason.contains(u"secret"));
    }
}

TEST(LinkCodec, HostileFilesAreRefusedOrComeBackUnchanged)
{
    const qsizetype files = forEachHostileFile(u"links"_s, [](const QString &name, const QByteArray &bytes) {
        const auto links = decodeLinks(bytes);
        EXPECT_EQ(links.hasValue(), !name.startsWith(u"bad-")) << qPrintable(name);
        if (!links)
            return;
        const auto again = decodeLinks(encodeLinks(*links));
        ASSERT_TRUE(again) << qPrintable(name);
        EXPECT_EQ(*again, *links) << qPrintable(name);
    });
    EXPECT_GT(files, 30);
}

} // namespace
} // namespace orvelle::test
