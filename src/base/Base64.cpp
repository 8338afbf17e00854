#include "base/Base64.h"

#include <array>

namespace orvelle {

namespace {

constexpr quint32 invalid = 0x80000000;

/// One table for each of the four characters of a quantum: its six bits where
/// they belong in the 24.
using Table = std::array<quint32, 256>;

constexpr Table tableShiftedBy(int shift)
{
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    Table table{};
    table.fill(invalid);
    for (std::size_t i = 0; i < alphabet.size(); ++i)
        table[static_cast<unsigned char>(alphabet[i])] = static_cast<quint32>(i) << shift;
    return table;
}

constexpr Table first = tableShiftedBy(18);
constexpr Table second = tableShiftedBy(12);
constexpr Table third = tableShiftedBy(6);
constexpr Table fourth = tableShiftedBy(0);

void store(char *out, quint32 bits, int count)
{
    for (int i = 0; i < count; ++i)
        out[i] = static_cast<char>(bits >> (16 - 8 * i));
}

} // namespace

std::optional<QByteArray> base64Decoded(std::string_view text)
{
    if (text.size() % 4 != 0)
        return std::nullopt;
    if (text.empty())
        return QByteArray("");
    const auto at = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const int padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    const std::size_t last = text.size() - 4;
    QByteArray bytes(static_cast<qsizetype>(text.size() / 4 * 3) - padding, Qt::Uninitialized);
    char *out = bytes.data();
    quint32 seen = 0;
    for (std::size_t i = 0; i < last; i += 4, out += 3) {
        const quint32 bits = first[at(i)] | second[at(i + 1)] | third[at(i + 2)] | fourth[at(i + 3)];
        seen |= bits;
        store(out, bits, 3);
    }
    quint32 bits = first[at(last)] | second[at(last + 1)];
    if (padding < 2)
        bits |= third[at(last + 2)];
    if (padding < 1)
        bits |= fourth[at(last + 3)];
    store(out, bits, 3 - padding);
    if ((seen | bits) & invalid)
        return std::nullopt;
    return bytes;
}

} // namespace orvelle
