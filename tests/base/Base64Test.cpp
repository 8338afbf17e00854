#include "base/Base64.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace orvelle {
namespace {

TEST(Base64, ReadsWhatOthersWrite)
{
    QRandomGenerator random(20260101);
    for (int size = 0; size < 70; ++size) {
        QByteArray bytes(size, '\0');
        for (char &c : bytes)
            c = static_cast<char>(random.generate());
        const QByteArray text = bytes.toBase64();
        EXPECT_EQ(base64Decoded({text.constData(), static_cast<std::size_t>(text.size())}), bytes) << size;
    }
}

TEST(Base64, RefusesEverythingElse)
{
    const std::string_view refused[] = {
        "A",    "AA",     "AAA",      "AAAAA",      "A===",     "====",
        "=AAA", "A=AA",   "AA=A",     "AA==AAAA",   "AAA=AAAA", "AA-_",
        "AA A", "AAAA\n", "AAAA\r\n", "AA\xc3\xa9", "AAA\x80",  std::string_view("AA\0A", 4)};
    for (const std::string_view text : refused)
        EXPECT_FALSE(base64Decoded(text)) << text;
}

} // namespace
} // namespace orvelle
