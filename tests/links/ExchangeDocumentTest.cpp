#include "links/exchange/ExchangeDocument.h"

#include "base/Hash.h"
#include "support/Hostile.h"
#include "support/Outline.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace orvelle::test {
namespace {

QByteArray fixture(const QString &name)
{
    QFile file(QStringLiteral(ORVELLE_SOURCE_DIR "/tests/hostile/exchange/") + name);
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << qPrintable(name);
    return file.readAll();
}

ExportData decoded(const QByteArray &bytes)
{
    const auto document = decodeExchange(bytes);
    EXPECT_TRUE(document) << (document ? "" : qPrintable(document.error().detail));
    return document ? *document : ExportData{};
}

// The fixture was made by another program's JSON writer, with the digest that
// another implementation gave.
TEST(ExchangeDocument, GoldenDocumentComesBackByteByByte)
{
    const QByteArray golden = fixture(u"ok-everything.ovexport"_s);
    const ExportData document = decoded(golden);
    EXPECT_EQ(encodeExchange(document), golden);
    EXPECT_EQ(linksChecksum(document.links), document.checksum);
    ASSERT_EQ(document.links.size(), 4);
    EXPECT_EQ(document.links[0].name, u"Example / \"quoted\" \\ back");
    EXPECT_EQ(document.links[1].children->at(0).bookmarkData, QByteArray("\x00\x01\xfe\xff", 4));
    EXPECT_EQ(document.links[1].children->at(2).modifiedAt, Timestamp::distantPast());
    EXPECT_EQ(document.quickLaunchApps->at(1), std::nullopt);
    EXPECT_EQ(document.calendarSettings->displayScope, u"2");
    EXPECT_EQ(document.generalSettings->globalShortcutModifiers, 0x40000);
    EXPECT_TRUE(golden.contains("https://example.org/a?b=c&d=<e>")) << "a slash stays a slash";
}

TEST(ExchangeDocument, HostileFilesAreRefusedOrComeBackUnchanged)
{
    const qsizetype files = forEachHostileFile(u"exchange"_s, [](const QString &name, const QByteArray &bytes) {
        SCOPED_TRACE(qPrintable(name));
        const auto document = decodeExchange(bytes);
        EXPECT_EQ(document.hasValue(), !name.startsWith(u"bad-"));
        if (!document)
            return;
        const QByteArray once = encodeExchange(*document);
        EXPECT_EQ(encodeExchange(decoded(once)), once);
    });
    EXPECT_GT(files, 40);
}

TEST(ExchangeDocument, AnErrorNamesThePlace)
{
    const std::pair<const char *, const char *> cases[] = {
        {"bad-no-exportDate", "exportDate"},
        {"bad-null-required", "appBuild"},
        {"bad-item-date", "links[0].createdAt"},
        {"bad-item-null", "links[0]"},
        {"bad-section-incomplete", "weatherSettings.manualCity"},
        {"bad-max-events-text", "calendarSettings.maxEvents"},
        {"bad-order-null", "widgetOrder[0]"},
        {"bad-quick-launch-no-path", "quickLaunchApps[0].path"},
        {"bad-array", "the root"},
    };
    for (const auto &[name, place] : cases) {
        const auto document = decodeExchange(fixture(QString::fromLatin1(name) + u".ovexport"_s));
        ASSERT_FALSE(document) << name;
        EXPECT_EQ(document.error().kind, ImportError::Kind::Undecodable);
        EXPECT_EQ(document.error().detail, QLatin1StringView(place)) << name;
    }
}

QByteArray withLinks(const QByteArray &links)
{
    return R"({"version":6,"appVersion":"1","appBuild":"1","exportDate":"2026-01-01T00:00:00Z","links":)" + links + '}';
}

TEST(ExchangeDocument, LimitsAreRefusalsOfTheirOwn)
{
    const auto refusal = [](const QByteArray &bytes, WorkProgress *progress = nullptr) {
        const auto document = decodeExchange(bytes, progress);
        return document ? std::nullopt : std::optional(document.error().kind);
    };
    const QByteArray item = R"({"name":"a","path":"b","type":"url"},)";
    EXPECT_EQ(refusal(fixture(u"bad-deep.ovexport"_s)), ImportError::Kind::TooDeep);
    EXPECT_EQ(refusal(withLinks('[' + item.repeated(maxExchangeItems).chopped(1) + ']')), std::nullopt);
    EXPECT_EQ(refusal(withLinks('[' + item.repeated(maxExchangeItems + 1).chopped(1) + ']')),
              ImportError::Kind::TooManyItems);
    const QByteArray small = withLinks("[]");
    EXPECT_EQ(refusal(small + QByteArray(maxExchangeBytes - small.size(), ' ')), std::nullopt);
    EXPECT_EQ(refusal(small + QByteArray(maxExchangeBytes - small.size() + 1, ' ')), ImportError::Kind::TooLarge);
    WorkProgress cancelled;
    cancelled.cancelled = true;
    EXPECT_EQ(refusal(withLinks('[' + item.chopped(1) + ']'), &cancelled), ImportError::Kind::Cancelled);
}

TEST(ExchangeDocument, TheChecksumIsOfTheCompactSortedLinks)
{
    const LinkItem item = namedLink(u"a"_s);
    const QByteArray form = encodeForChecksum({item});
    EXPECT_EQ(form, R"([{"createdAt":"2001-01-01T00:16:40Z","id":")" + item.stableId.toLatin1() +
                        R"(","modifiedAt":"2001-01-01T00:16:40Z","name":"a","path":"https://a.example","stableId":")" +
                        item.stableId.toLatin1() + R"(","type":"url"}])");
    EXPECT_EQ(linksChecksum({item}), sha256Hex(form));
    EXPECT_EQ(linksChecksum({}), sha256Hex("[]"));
}

TEST(ExchangeDocument, OnlyTheLinksThemselvesChangeTheChecksum)
{
    const QByteArray golden = fixture(u"ok-everything.ovexport"_s);
    const std::tuple<const char *, const char *, const char *, bool> edits[] = {
        {"nothing", "", "", true},
        {"white space", "\n  ", "\n\t ", true},
        {"escapes", "https://example", "https:\\/\\/example", true},
        {"a setting", "\"neon\"", "\"dock\"", true},
        {"a name", "\"Note\"", "\"Nite\"", false},
        {"a flag", "\"noteColoredInMenu\" : false", "\"noteColoredInMenu\" : true", false},
        {"a key of another version", "\"name\" : \"Note\"", "\"name\" : \"Note\", \"new\" : 1", false},
        {"the checksum", "44dde26c", "44dde26d", false},
    };
    for (const auto &[what, from, to, matches] : edits) {
        const auto report = verifyExchange(QByteArray(golden).replace(from, to));
        ASSERT_TRUE(report) << what;
        EXPECT_EQ(report->matches(), matches) << what;
    }
    const auto without = verifyExchange(fixture(u"ok-no-identities.ovexport"_s));
    ASSERT_TRUE(without);
    EXPECT_EQ(without->stated, std::nullopt);
    EXPECT_EQ(without->computed, sha256Hex(R"([{"name":"a","path":"https://a","type":"url"},)"
                                           R"({"name":"g","path":"","type":"group"}])"));
    EXPECT_FALSE(verifyExchange("{}"));
}

TEST(ExchangeDocument, TheContentDigestCoversTheSettingsToo)
{
    ExportData document = decoded(fixture(u"ok-everything.ovexport"_s));
    const ExchangeDigests before = exchangeDigests(document);
    EXPECT_EQ(before.links, document.checksum);
    document.exportDate = document.exportDate + 1;
    EXPECT_EQ(exchangeDigests(document).content, before.content);
    document.widgetOrder->removeLast();
    EXPECT_EQ(exchangeDigests(document).links, before.links);
    EXPECT_NE(exchangeDigests(document).content, before.content);
}

// --- documents nobody thought of

class RandomTrees
{
public:
    explicit RandomTrees(quint32 seed) : m_random(seed) {}

    LinkList list(int depth)
    {
        LinkList links;
        for (quint32 count = m_random.bounded(5U); count > 0; --count)
            links += item(depth);
        return links;
    }

private:
    LinkItem item(int depth)
    {
        constexpr LinkType types[] = {LinkType::File, LinkType::Folder, LinkType::Url, LinkType::Group, LinkType::Note};
        LinkItem made = LinkItem::make(text(), text(), types[m_random.bounded(5)], date());
        made.modifiedAt = coin() ? std::optional(date()) : std::nullopt;
        made.contentModifiedAt = coin() ? std::optional(Timestamp{std::nan("")}) : std::nullopt;
        made.customIconName = coin() ? std::optional(text()) : std::nullopt;
        made.noteRTFData = coin() ? std::optional(text().toUtf8()) : std::nullopt;
        made.bookmarkData = coin() ? std::optional(QByteArray()) : std::nullopt;
        made.noteColoredInMenu = coin() ? std::optional(coin()) : std::nullopt;
        made.children.reset();
        if (made.isGroup())
            made.children = depth > 0 ? list(depth - 1) : LinkList();
        return made;
    }

    bool coin() { return m_random.bounded(2) == 1; }

    Timestamp date()
    {
        constexpr double odd[] = {0, -0.5, 1e18, -1e18, 252423993599.9, -63114076800};
        return {coin() ? odd[m_random.bounded(6)] : m_random.generateDouble() * 1e9};
    }

    QString text()
    {
        QString made;
        constexpr char16_t odd[] = {0, u'"', u'\\', u'/', u'\n', 0x7f, u'é', 0x2028, 0xfeff, 0xd800};
        for (quint32 length = m_random.bounded(8U); length > 0; --length)
            made += coin() ? QChar(u'a' + m_random.bounded(26)) : QChar(odd[m_random.bounded(10)]);
        return made;
    }

    QRandomGenerator m_random;
};

TEST(ExchangeDocument, AnyTreeIsWrittenTheSameAgainOnceItWasRead)
{
    for (quint32 seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        ExportData document;
        document.links = RandomTrees(seed).list(4);
        document.checksum = linksChecksum(document.links);
        const QByteArray once = encodeExchange(document);
        const ExportData read = decoded(once);
        ASSERT_EQ(encodeExchange(read), once);
        ASSERT_EQ(linksChecksum(read.links), document.checksum);
        const auto report = verifyExchange(once);
        ASSERT_TRUE(report && report->matches());
    }
}

} // namespace
} // namespace orvelle::test
