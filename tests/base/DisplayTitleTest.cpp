#include "base/DisplayTitle.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace orvelle {

TEST(DisplayTitle, IsOneLineOfBoundedLengthWithBothEnds)
{
    const QString astral = u"\U0001F600"_s; // two units each
    const struct {
        QString title;
        qsizetype longest;
        QString shown;
    } cases[] = {
        {u"as it is"_s, 8, u"as it is"_s},
        {u"0123456789"_s, 8, u"0123…6789"_s},
        {u"a\nb\tc\u2028d\u2029e\x1b[0m"_s, 80, u"a b c d e [0m"_s},
        {u"abc"_s + astral + u"defg"_s + astral + u"hij"_s, 8, u"abc…hij"_s},
        {u""_s, 8, u""_s},
    };
    for (const auto &each : cases)
        EXPECT_EQ(displayTitle(each.title, each.longest), each.shown) << qPrintable(each.title);
    EXPECT_LT(displayTitle(QString(1'000'000, u'x')).size(), 400);
}

} // namespace orvelle
