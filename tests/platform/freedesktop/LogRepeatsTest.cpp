#include "platform/freedesktop/log/LogRepeats.h"

#include <gtest/gtest.h>

namespace orvelle::test {

using namespace Qt::StringLiterals;

TEST(LogRepeats, ALineComesAgainOnceAMinute)
{
    LogRepeats repeats;
    struct {
        double at;
        const char16_t *line;
        std::optional<int> admitted;
    } const said[] = {{0, u"gone", 0},   {1, u"gone", 0},     {2, u"gone", {}},  {3, u"back", 0},  {59, u"gone", {}},
                      {60, u"gone", 2},  {60.5, u"gone", {}}, {61, u"gone", 1},  {62, u"back", 0}, {119, u"gone", {}},
                      {500, u"gone", 1}, {501, u"gone", 0},   {502, u"gone", {}}};
    for (const auto &each : said)
        EXPECT_EQ(repeats.admit(QString::fromUtf16(each.line), each.at), each.admitted) << each.at;
}

TEST(LogRepeats, ManyDifferentLinesAreNotKeptForEver)
{
    LogRepeats repeats;
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(repeats.admit(QString::number(i), i), 0);
    EXPECT_EQ(repeats.admit(u"4999"_s, 5000), 0);
    EXPECT_EQ(repeats.admit(u"4999"_s, 5001), std::nullopt);
}

} // namespace orvelle::test
