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

constexpr quint8 notHex = 0xFF;

constexpr std::array<quint8, 256> makeHexValues()
{
    std::array<quint8, 256> values{};
    values.fill(notHex);
    for (quint8 digit = 0; digit < 10; ++digit)
        values[std::size_t('0') + digit] = digit;
    for (quint8 letter = 0; letter < 6; ++letter) {
        values[std::size_t('A') + letter] = static_cast<quint8>(10 + letter);
        values[std::size_t('a') + letter] = static_cast<quint8>(10 + letter);
    }
    return values;
}
constexpr std::array<quint8, 256> hexValues = makeHexValues();

/// Where the two digits of each byte begin.
constexpr std::array<std::size_t, 16> bytePlaces = {0, 2, 4, 6, 9, 11, 14, 16, 19, 21, 24, 26, 28, 30, 32, 34};

template<typename Char>
quint8 hexValue(Char c)
{
    const auto code = static_cast<std::make_unsigned_t<Char>>(c);
    return code < hexValues.size() ? hexValues[code] : notHex;
}

template<typename Char>
std::optional<QUuid> parse(const Char *text, std::size_t size)
{
    if (size != textLength || text[8] != Char('-') || text[13] != Char('-') || text[18] != Char('-') ||
        text[23] != Char('-'))
        return std::nullopt;
    std::array<uchar, 16> bytes{};
    quint8 seen = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const quint8 high = hexValue(text[bytePlaces[i]]);
        const quint8 low = hexValue(text[bytePlaces[i] + 1]);
        seen |= high | low;
        bytes[i] = static_cast<uchar>(high << 4 | low);
    }
    if (seen > 0xF)
        return std::nullopt;
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
