#include "base/Uuid.h"

#include <QtEndian>

#include <array>

namespace orvelle {

namespace {

// Read and written by hand because a tree has one in every item, and QUuid's
// own conversions took a sixth of the time to load it.

constexpr int textLength = 36;

constexpr bool isHyphenPlace(int i)
{
    return i == 8 || i == 13 || i == 18 || i == 23;
}

constexpr int hexValue(char32_t c)
{
    if (c >= U'0' && c <= U'9')
        return static_cast<int>(c - U'0');
    if (c >= U'A' && c <= U'F')
        return static_cast<int>(c - U'A') + 10;
    if (c >= U'a' && c <= U'f')
        return static_cast<int>(c - U'a') + 10;
    return -1;
}

template<typename Char>
std::optional<QUuid> parse(const Char *text, std::size_t size)
{
    if (size != textLength)
        return std::nullopt;
    std::array<uchar, 16> bytes{};
    std::size_t nibble = 0;
    for (int i = 0; i < textLength; ++i) {
        const auto c = static_cast<char32_t>(text[i]);
        if (isHyphenPlace(i)) {
            if (c != U'-')
                return std::nullopt;
            continue;
        }
        const int value = hexValue(c);
        if (value < 0)
            return std::nullopt;
        bytes[nibble / 2] = static_cast<uchar>(bytes[nibble / 2] << 4 | value);
        ++nibble;
    }
    return QUuid(qFromBigEndian<quint32>(&bytes[0]), qFromBigEndian<quint16>(&bytes[4]),
                 qFromBigEndian<quint16>(&bytes[6]), bytes[8], bytes[9], bytes[10], bytes[11], bytes[12], bytes[13],
                 bytes[14], bytes[15]);
}

} // namespace

QString uuidText(const QUuid &uuid)
{
    const QByteArray bytes = uuid.toRfc4122();
    QString text(textLength, Qt::Uninitialized);
    QChar *out = text.data();
    qsizetype nibble = 0;
    for (int i = 0; i < textLength; ++i) {
        if (isHyphenPlace(i)) {
            out[i] = u'-';
            continue;
        }
        const auto byte = static_cast<uchar>(bytes[nibble / 2]);
        const int value = nibble % 2 == 0 ? byte >> 4 : byte & 0xF;
        out[i] = QChar(u"0123456789ABCDEF"[value]);
        ++nibble;
    }
    return text;
}

QString newUuidText()
{
    return uuidText(QUuid::createUuid());
}

std::optional<QUuid> parseUuid(QStringView text)
{
    return parse(text.utf16(), static_cast<std::size_t>(text.size()));
}

std::optional<QUuid> parseUuid(std::string_view text)
{
    return parse(text.data(), text.size());
}

} // namespace orvelle
