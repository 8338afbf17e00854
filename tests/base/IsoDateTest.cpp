#include "base/IsoDate.h"

#include <QDateTime>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

TEST(IsoDate, WritesWholeSecondsWithinFourDigitYears)
{
    const std::pair<double, const char *> cases[] = {
        {0, "2001-01-01T00:00:00Z"},
        {0.999, "2001-01-01T00:00:00Z"},
        {-0.001, "2000-12-31T23:59:59Z"},
        {730857600 + 3661, "2024-02-29T01:01:01Z"},
        {Timestamp::distantPast().seconds, "0001-01-01T00:00:00Z"},
        {-1e300, "0001-01-01T00:00:00Z"},
        {252423993599, "9999-12-31T23:59:59Z"},
        {252423993600, "9999-12-31T23:59:59Z"},
        {1e300, "9999-12-31T23:59:59Z"},
    };
    for (const auto &[seconds, text] : cases)
        EXPECT_EQ(IsoDate(Timestamp{seconds}).text(), text) << seconds;
}

TEST(Timestamp, OfADocumentCanBeShownWhateverItIs)
{
    const QDateTime first = Timestamp::distantPast().toDateTime();
    const QDateTime last = Timestamp::distantFuture().toDateTime();
    EXPECT_EQ(first.toSecsSinceEpoch(), -62135769600);
    EXPECT_EQ(last, QDateTime({9999, 12, 31}, {23, 59, 59}, Qt::UTC));
    EXPECT_EQ(Timestamp{-1e300}.toDateTime(), first);
    EXPECT_EQ(Timestamp{qQNaN()}.toDateTime(), first);
    EXPECT_EQ(Timestamp{1e300}.toDateTime(), last);
    EXPECT_EQ(Timestamp{0.0004}.toDateTime(), QDateTime({2001, 1, 1}, {0, 0}, Qt::UTC));
}

TEST(IsoDate, ReadsTheOneFormOnly)
{
    const std::pair<const char *, std::optional<double>> cases[] = {
        {"2001-01-01T00:00:00Z", 0},
        {"2001-01-01T02:00:00+02:00", 0},
        {"2000-12-31T18:30:00-05:30", 0},
        {"0001-01-01T00:00:00Z", Timestamp::distantPast().seconds},
        {"9999-12-31T23:59:59Z", 252423993599},
        {"2024-02-29T00:00:00Z", 730857600},
        {"2023-02-29T00:00:00Z", {}},
        {"0000-01-01T00:00:00Z", {}},
        {"2001-13-01T00:00:00Z", {}},
        {"2001-00-01T00:00:00Z", {}},
        {"2001-01-01T24:00:00Z", {}},
        {"2001-01-01T00:60:00Z", {}},
        {"2001-01-01T00:00:60Z", {}},
        {"2001-01-01T00:00:00+24:00", {}},
        {"2001-01-01T00:00:00.5Z", {}},
        {"2001-01-01T00:00:00", {}},
        {"2001-01-01 00:00:00Z", {}},
        {"2001-01-01t00:00:00z", {}},
        {"2001-01-01", {}},
        {"2001-01-01T00:00:00ZZ", {}},
        {"2001-01-01T00:00:00+0200", {}},
        {"-001-01-01T00:00:00Z", {}},
        {"", {}},
    };
    for (const auto &[text, seconds] : cases) {
        const auto moment = parseIsoDate(text);
        EXPECT_EQ(moment ? std::optional(moment->seconds) : std::nullopt, seconds) << text;
    }
}

TEST(IsoDate, AgreesWithTheToolkitOnEveryKindOfDay)
{
    // A step of some days and an odd number of seconds meets all months.
    for (double seconds = -63113904000 + 1; seconds < 252423993599; seconds += 8'765'432.0 * 7) {
        const QByteArray text = Timestamp{seconds}.toDateTime().toString(Qt::ISODate).toLatin1();
        ASSERT_EQ(IsoDate(Timestamp{seconds}).text(), text.toStdString());
        ASSERT_EQ(parseIsoDate(text.toStdString()), Timestamp{seconds});
    }
}

} // namespace
} // namespace orvelle::test
