#include "base/text/windows_1252.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <iterator>

#include "base/text/resize_and_fill.h"
#include "base/text/vector/kernels.h"

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Oxa_1_1::text
{

namespace
{

#include "base/text/windows_1252_table.inc"

constexpr std::size_t DECODED_BLOCK = 64;
constexpr std::size_t ENCODED_BLOCK = 16;

Char decodeByte(unsigned char byte) { return (byte & 0xE0) == 0x80 ? MIDDLE_UNITS[byte & 0x1F] : byte; }

char encodeUnit(Char unit)
{
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return static_cast<char>(unit);
    const auto* const entry =
        std::lower_bound(std::begin(OTHER_UNITS), std::end(OTHER_UNITS), std::uint32_t(unit) << 8);
    return entry != std::end(OTHER_UNITS) && *entry >> 8 == unit ? static_cast<char>(*entry & 0xFF) : '?';
}

// Most bytes are the Latin-1 values of their units. All are converted as if they were; the others are put right.

#ifdef __SSE2__

void mendBlock(const char* bytes, Char* units)
{
    std::uint64_t middle = 0;
    for (std::size_t i = 0; i < DECODED_BLOCK; i += sizeof(__m128i))
    {
        const __m128i top = _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i)),
                                          _mm_set1_epi8(static_cast<char>(0xE0)));
        const int hits = _mm_movemask_epi8(_mm_cmpeq_epi8(top, _mm_set1_epi8(static_cast<char>(0x80))));
        middle |= static_cast<std::uint64_t>(hits) << i;
    }
    for (; middle != 0; middle &= middle - 1)
    {
        const int i = std::countr_zero(middle);
        units[i] = decodeByte(static_cast<unsigned char>(bytes[i]));
    }
}

void encodeBlock(const Char* units, char* bytes)
{
    const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
    const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units) + 1);
    const __m128i block = _mm_packus_epi16(first, second);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), block);
    const __m128i high = _mm_packs_epi16(_mm_srli_epi16(first, 8), _mm_srli_epi16(second, 8));
    const __m128i top = _mm_and_si128(block, _mm_set1_epi8(static_cast<char>(0xE0)));
    const __m128i middle = _mm_cmpeq_epi8(top, _mm_set1_epi8(static_cast<char>(0x80)));
    const __m128i same = _mm_andnot_si128(middle, _mm_cmpeq_epi8(high, _mm_setzero_si128()));
    auto others = static_cast<unsigned>(_mm_movemask_epi8(same)) ^ 0xFFFF;
    for (; others != 0; others &= others - 1)
    {
        const int i = std::countr_zero(others);
        bytes[i] = encodeUnit(units[i]);
    }
}

#else

void mendBlock(const char* bytes, Char* units)
{
    for (std::size_t i = 0; i < DECODED_BLOCK; ++i) units[i] = decodeByte(static_cast<unsigned char>(bytes[i]));
}

void encodeBlock(const Char* units, char* bytes)
{
    for (std::size_t i = 0; i < ENCODED_BLOCK; ++i) bytes[i] = encodeUnit(units[i]);
}

#endif

/// Block by block, and the rest one by one.
template <std::size_t BLOCK, class Source, class Target, class ConvertBlock, class ConvertOne>
void convert(const Source* source, std::size_t length, Target* target, ConvertBlock convertBlock, ConvertOne convertOne)
{
    std::size_t i = 0;
    for (; length - i >= BLOCK; i += BLOCK) convertBlock(source + i, target + i);
    for (; i < length; ++i) target[i] = convertOne(source[i]);
}

}  // namespace

Text decodeWindows1252(std::string_view bytes)
{
    const auto decodeOne = [](char byte) { return decodeByte(static_cast<unsigned char>(byte)); };
    Text text;
    resizeAndFill(text, bytes.size(),
                  [&](Char* units)
                  {
                      textKernels().widenBytes(bytes.data(), bytes.size(), units);
                      convert<DECODED_BLOCK>(bytes.data(), bytes.size(), units, mendBlock, decodeOne);
                  });
    return text;
}

std::string encodeWindows1252(TextView text)
{
    std::string bytes;
    resizeAndFill(bytes, text.size(),
                  [&](char* buffer)
                  { convert<ENCODED_BLOCK>(text.data(), text.size(), buffer, encodeBlock, encodeUnit); });
    return bytes;
}

}  // namespace Oxa_1_1::text
