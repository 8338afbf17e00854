#include "base/Hash.h"

#include <QCryptographicHash>

#include <gtest/gtest.h>

namespace orvelle::test {
namespace {

TEST(Hash, AgreesWithTheStandardsExamplesAndAnotherImplementation)
{
    EXPECT_EQ(sha256Hex({}), u"e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sha256Hex("abc"), u"ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    // Every length around the block size, and all bytes.
    QByteArray bytes;
    for (int length = 0; length < 300; ++length, bytes += static_cast<char>(length)) {
        const QByteArray other = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
        ASSERT_EQ(sha256Hex(bytes), QLatin1StringView(other)) << length;
    }
}

TEST(Hash, GoesOnAfterItWasAsked)
{
    Sha256 hash;
    hash.add("a");
    EXPECT_EQ(hash.hex(), sha256Hex("a"));
    hash.add("bc");
    EXPECT_EQ(hash.hex(), sha256Hex("abc"));
}

} // namespace
} // namespace orvelle::test
