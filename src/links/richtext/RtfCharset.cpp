#include "links/richtext/RtfCharset.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace orvelle {

namespace {

struct NumberPair {
    int charset;
    int codePage;
};

constexpr NumberPair charsets[] = {
    {0, 1252},   {2, RtfCharset::symbolFont},
    {77, 10000}, {78, 932},
    {128, 932},  {129, 949},
    {130, 1361}, {134, 936},
    {136, 950},  {161, 1253},
    {162, 1254}, {163, 1258},
    {177, 1255}, {178, 1256},
    {186, 1257}, {204, 1251},
    {222, 874},  {238, 1250},
    {254, 437},  {255, 437},
};

struct NamedPage {
    int codePage;
    const char *name;
};

/// Those that are not called "CP" and their number.
constexpr NamedPage namedPages[] = {
    {708, "ISO-8859-6"}, {10000, "MACINTOSH"}, {10001, "CP932"}, {10007, "MAC-CYRILLIC"},
    {20866, "KOI8-R"},   {28591, "LATIN1"},    {65001, "UTF-8"},
};

iconv_t invalid()
{
    return reinterpret_cast<iconv_t>(-1);
}

QByteArray encodingName(int codePage)
{
    const auto *named =
        std::ranges::find_if(namedPages, [codePage](const NamedPage &p) { return p.codePage == codePage; });
    return named != std::end(namedPages) ? QByteArray(named->name) : "CP" + QByteArray::number(codePage);
}

QString asciiAnd(QByteArrayView bytes, char16_t (*other)(unsigned char))
{
    QString result;
    result.reserve(bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        result += QChar(byte < 0x80 ? static_cast<char16_t>(byte) : other(byte));
    }
    return result;
}

char16_t unknownByte(unsigned char)
{
    return QChar::ReplacementCharacter;
}

/// The one of them that texts really use is the bullet; the rest keep their
/// number in the private area where such fonts have their pictures.
char16_t symbolByte(unsigned char byte)
{
    return byte == 0xb7 ? u'\u2022' : static_cast<char16_t>(0xf000 + byte);
}

QString convert(iconv_t converter, QByteArrayView bytes)
{
    QString result;
    // iconv reads through a pointer to non-const but does not write there.
    char *in = const_cast<char *>(bytes.data());
    std::size_t left = static_cast<std::size_t>(bytes.size());
    std::array<char16_t, 512> buffer;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    while (left > 0) {
        char *out = reinterpret_cast<char *>(buffer.data());
        std::size_t room = sizeof buffer;
        const std::size_t converted = iconv(converter, &in, &left, &out, &room);
        const bool failed = converted == static_cast<std::size_t>(-1) && errno != E2BIG;
        result += QStringView(buffer.data(), static_cast<qsizetype>((sizeof buffer - room) / sizeof(char16_t)));
        if (failed && left > 0) {
            result += QChar(QChar::ReplacementCharacter);
            ++in;
            --left;
        }
    }
    char *out = reinterpret_cast<char *>(buffer.data());
    std::size_t room = sizeof buffer;
    iconv(converter, nullptr, nullptr, &out, &room);
    result += QStringView(buffer.data(), static_cast<qsizetype>((sizeof buffer - room) / sizeof(char16_t)));
    return result;
}

} // namespace

RtfCharset::~RtfCharset()
{
    for (void *converter : std::as_const(m_converters)) {
        if (converter != invalid())
            iconv_close(converter);
    }
}

int RtfCharset::codePageOfCharset(int charset, int fallback)
{
    const auto *found =
        std::ranges::find_if(charsets, [charset](const NumberPair &pair) { return pair.charset == charset; });
    return found != std::end(charsets) ? found->codePage : fallback;
}

QString RtfCharset::decode(QByteArrayView bytes, int codePage)
{
    if (std::ranges::all_of(bytes, [](char c) { return static_cast<signed char>(c) >= 0; }))
        return QString::fromLatin1(bytes);
    if (codePage == symbolFont)
        return asciiAnd(bytes, symbolByte);
    const iconv_t with = converter(codePage);
    return with == invalid() ? asciiAnd(bytes, unknownByte) : convert(with, bytes);
}

void *RtfCharset::converter(int codePage)
{
    const auto known = m_converters.constFind(codePage);
    if (known != m_converters.constEnd())
        return known.value();
    constexpr const char *native = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? "UTF-16LE" : "UTF-16BE";
    // A file may name any number of pages; each real one costs memory.
    const bool mayOpen = m_converters.size() < 64;
    return m_converters[codePage] = mayOpen ? iconv_open(native, encodingName(codePage).constData()) : invalid();
}

} // namespace orvelle
