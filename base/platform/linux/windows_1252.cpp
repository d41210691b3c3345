#include "base/platform/linux/windows_1252.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Oxa_1_1::platform
{

namespace
{

#include "base/platform/linux/windows_1252_table.inc"

constexpr std::size_t BLOCK = 16;

Char decodeByte(unsigned char byte) { return (byte & 0xE0) == 0x80 ? MIDDLE_UNITS[byte & 0x1F] : byte; }

char encodeUnit(Char unit)
{
    if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) return static_cast<char>(unit);
    const auto* const entry =
        std::lower_bound(std::begin(OTHER_UNITS), std::end(OTHER_UNITS), std::uint32_t(unit) << 8);
    return entry != std::end(OTHER_UNITS) && *entry >> 8 == unit ? static_cast<char>(*entry & 0xFF) : '?';
}

// Blocks whose bytes are the Latin-1 values of their units, which most blocks are, are converted as a whole.

#ifdef __SSE2__

bool decodeLatinBlock(const char* bytes, Char* units)
{
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
    const __m128i top = _mm_and_si128(block, _mm_set1_epi8(static_cast<char>(0xE0)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(top, _mm_set1_epi8(static_cast<char>(0x80)))) != 0) return false;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(block, _mm_setzero_si128()));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(units) + 1, _mm_unpackhi_epi8(block, _mm_setzero_si128()));
    return true;
}

bool encodeLatinBlock(const Char* units, char* bytes)
{
    const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
    const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units) + 1);
    const __m128i high = _mm_srli_epi16(_mm_or_si128(first, second), 8);
    const __m128i block = _mm_packus_epi16(first, second);
    const __m128i top = _mm_and_si128(block, _mm_set1_epi8(static_cast<char>(0xE0)));
    const __m128i middle = _mm_cmpeq_epi8(top, _mm_set1_epi8(static_cast<char>(0x80)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_or_si128(high, middle), _mm_setzero_si128())) != 0xFFFF) return false;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), block);
    return true;
}

#else

bool decodeLatinBlock(const char*, Char*) { return false; }

bool encodeLatinBlock(const Char*, char*) { return false; }

#endif

/// Block by block where `convertBlock` can, else one by one.
template <class Source, class Target, class ConvertBlock, class ConvertOne>
void convert(const Source* source, std::size_t length, Target* target, ConvertBlock convertBlock, ConvertOne convertOne)
{
    std::size_t i = 0;
    while (i < length)
    {
        if (length - i >= BLOCK && convertBlock(source + i, target + i))
        {
            i += BLOCK;
            continue;
        }
        for (const std::size_t end = std::min(i + BLOCK, length); i < end; ++i) target[i] = convertOne(source[i]);
    }
}

}  // namespace

Text decodeWindows1252(std::string_view bytes)
{
    Text text;
    text.resize_and_overwrite(bytes.size(),
                              [&](Char* units, std::size_t)
                              {
                                  convert(bytes.data(), bytes.size(), units, decodeLatinBlock,
                                          [](char byte) { return decodeByte(static_cast<unsigned char>(byte)); });
                                  return bytes.size();
                              });
    return text;
}

std::string encodeWindows1252(TextView text)
{
    std::string bytes;
    bytes.resize_and_overwrite(text.size(),
                               [&](char* buffer, std::size_t)
                               {
                                   convert(text.data(), text.size(), buffer, encodeLatinBlock, encodeUnit);
                                   return text.size();
                               });
    return bytes;
}

}  // namespace Oxa_1_1::platform
