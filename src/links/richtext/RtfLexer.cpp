#include "links/richtext/RtfLexer.h"

#include <algorithm>
#include <limits>

namespace orvelle {

namespace {

constexpr qsizetype maxWordLength = 32;

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

int hexValue(char c)
{
    if (isDigit(c))
        return c - '0';
    const int letter = (c | 0x20) - 'a';
    return letter >= 0 && letter < 6 ? letter + 10 : -1;
}

RtfLexer::Token byteToken(RtfLexer::Kind kind, char c)
{
    RtfLexer::Token token;
    token.kind = kind;
    token.byte = static_cast<unsigned char>(c);
    return token;
}

} // namespace

RtfLexer::Token RtfLexer::next()
{
    while (m_at < m_bytes.size()) {
        const char c = m_bytes[m_at++];
        switch (c) {
        case '{':
            return byteToken(Kind::GroupOpen, c);
        case '}':
            return byteToken(Kind::GroupClose, c);
        case '\\':
            return control();
        case '\r':
        case '\n':
        case '\0':
            break;
        default:
            return byteToken(Kind::Byte, c);
        }
    }
    return {};
}

RtfLexer::Token RtfLexer::control()
{
    if (m_at >= m_bytes.size())
        return {};
    const char c = m_bytes[m_at];
    if (isLetter(c))
        return word();
    ++m_at;
    switch (c) {
    case '\'':
        return hexByte();
    case '\\':
    case '{':
    case '}':
        return byteToken(Kind::Byte, c);
    case '\r':
        if (m_at < m_bytes.size() && m_bytes[m_at] == '\n')
            ++m_at;
        return byteToken(Kind::Symbol, '\n');
    default:
        return byteToken(Kind::Symbol, c);
    }
}

RtfLexer::Token RtfLexer::word()
{
    Token token;
    token.kind = Kind::Word;
    const qsizetype start = m_at;
    while (m_at < m_bytes.size() && isLetter(m_bytes[m_at]) && m_at - start < maxWordLength)
        ++m_at;
    token.name = m_bytes.sliced(start, m_at - start);
    token.hasNumber = readNumber(token.number);
    if (m_at < m_bytes.size() && m_bytes[m_at] == ' ')
        ++m_at;
    if (token.name == "bin" && token.number > 0)
        m_at += std::min<qsizetype>(token.number, m_bytes.size() - m_at);
    return token;
}

bool RtfLexer::readNumber(int &number)
{
    const bool negative = m_at < m_bytes.size() && m_bytes[m_at] == '-';
    const qsizetype digits = m_at + (negative ? 1 : 0);
    if (digits >= m_bytes.size() || !isDigit(m_bytes[digits]))
        return false;
    qint64 value = 0;
    for (m_at = digits; m_at < m_bytes.size() && isDigit(m_bytes[m_at]); ++m_at)
        value = std::min<qint64>(value * 10 + (m_bytes[m_at] - '0'), std::numeric_limits<int>::max());
    number = static_cast<int>(negative ? -value : value);
    return true;
}

RtfLexer::Token RtfLexer::hexByte()
{
    if (m_at + 1 < m_bytes.size()) {
        const int high = hexValue(m_bytes[m_at]);
        const int low = hexValue(m_bytes[m_at + 1]);
        if (high >= 0 && low >= 0) {
            m_at += 2;
            return byteToken(Kind::Byte, static_cast<char>(high * 16 + low));
        }
    }
    return byteToken(Kind::Symbol, '\'');
}

} // namespace orvelle
