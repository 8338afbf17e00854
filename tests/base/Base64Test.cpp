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

TEST(Base64, RefusesAForeignCharacterAtEveryPlace)
{
    const std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    QByteArray text = QByteArray("0aZ/").repeated(24);
    for (qsizetype place = 0; place < text.size() - 2; ++place) {
        const char before = text[place];
        for (int c = 0; c < 256; ++c) {
            text[place] = static_cast<char>(c);
            const auto bytes = base64Decoded({text.constData(), static_cast<std::size_t>(text.size())});
            ASSERT_EQ(bytes.has_value(), alphabet.find(static_cast<char>(c)) != alphabet.npos) << place << ' ' << c;
            ASSERT_EQ(bytes.value_or(QByteArray()).toBase64(), bytes ? text : QByteArray()) << place << ' ' << c;
        }
        text[place] = before;
    }
}

} // namespace
} // namespace orvelle
