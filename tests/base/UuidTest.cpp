#include "base/Uuid.h"

#include <gtest/gtest.h>

namespace orvelle {
namespace {

TEST(Uuid, OnlyTheHyphenatedFormIsRead)
{
    const QString canonical = QStringLiteral("6F9619FF-8B86-D011-B42D-00CF4FC964FF");
    ASSERT_TRUE(parseUuid(canonical));
    EXPECT_EQ(uuidText(*parseUuid(canonical.toLower())), canonical);
    EXPECT_EQ(*parseUuid(canonical), QUuid(canonical)) << "digits in their places";
    EXPECT_EQ(parseUuid(canonical.toStdString()), QUuid(canonical));
    const QString refused[] = {QString(),
                               u'{' + canonical + u'}',
                               QString(canonical).remove(u'-'),
                               QString(canonical).replace(0, 1, u'G'),
                               QString(canonical).replace(35, 1, QChar(0x0130)), // its lower byte is a digit
                               QString(canonical).replace(8, 1, u'0'),
                               canonical + u'0'};
    for (const QString &text : refused)
        EXPECT_FALSE(parseUuid(text)) << qPrintable(text);
}

} // namespace
} // namespace orvelle
