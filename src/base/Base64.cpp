#include "base/Base64.h"

#include <array>

#ifdef __x86_64__
#include <tmmintrin.h>
#endif

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

#ifdef __x86_64__

/// Decodes blocks of 16 characters while at least `spare` follow, the room
/// that a store of 16 bytes for 12 needs. How far it came; short of that when
/// a block holds a foreign character, which is left to the tables to refuse.
///
/// After W. Muła and D. Lemire, "Faster Base64 Encoding and Decoding Using
/// AVX2 Instructions" (2018), at half the width: two 16-entry tables, indexed
/// by the halves of a character, have a bit in common for foreign characters
/// only, and a third says what to add to get from a character to its six bits.
__attribute__((target("ssse3"))) std::size_t decodeBlocks(std::string_view text, char *out)
{
    constexpr std::size_t block = 16;
    constexpr std::size_t spare = 12;
    const __m128i lowHalves =
        _mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1a, 0x1b, 0x1b, 0x1b, 0x1a);
    const __m128i highHalves =
        _mm_setr_epi8(0x10, 0x10, 0x01, 0x02, 0x04, 0x08, 0x04, 0x08, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x10);
    const __m128i offsets = _mm_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
    const __m128i slash = _mm_set1_epi8('/');
    const __m128i order = _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);

    std::size_t at = 0;
    for (; text.size() - at >= block + spare; at += block, out += 12) {
        const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i *>(text.data() + at));
        // 0x2f keeps four bits and one that the table lookup disregards; it also is '/'.
        const __m128i high = _mm_and_si128(_mm_srli_epi32(characters, 4), slash);
        const __m128i low = _mm_and_si128(characters, slash);
        const __m128i foreign = _mm_and_si128(_mm_shuffle_epi8(lowHalves, low), _mm_shuffle_epi8(highHalves, high));
        if (_mm_movemask_epi8(_mm_cmpgt_epi8(foreign, _mm_setzero_si128())) != 0)
            break;
        const __m128i isSlash = _mm_cmpeq_epi8(characters, slash);
        const __m128i sixBits = _mm_add_epi8(characters, _mm_shuffle_epi8(offsets, _mm_add_epi8(isSlash, high)));
        const __m128i twelveBits = _mm_maddubs_epi16(sixBits, _mm_set1_epi32(0x01400140));
        const __m128i quanta = _mm_madd_epi16(twelveBits, _mm_set1_epi32(0x00011000));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out), _mm_shuffle_epi8(quanta, order));
    }
    return at;
}

bool hasBlockDecoder()
{
    static const bool has = __builtin_cpu_supports("ssse3");
    return has;
}

#else

std::size_t decodeBlocks(std::string_view, char *)
{
    return 0;
}

constexpr bool hasBlockDecoder()
{
    return false;
}

#endif

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
    const std::size_t done = hasBlockDecoder() ? decodeBlocks(text, out) : 0;
    out += done / 4 * 3;
    for (std::size_t i = done; i < last; i += 4, out += 3) {
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
