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

constexpr std::size_t MARKED_BLOCK = 64;
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

void encodeBlock(const Char* units, char* bytes)
{
    for (std::size_t i = 0; i < ENCODED_BLOCK; ++i) bytes[i] = encodeUnit(units[i]);
}

#endif

/// Of whole blocks.
void mendBlocks(const char* bytes, std::size_t blocks, Char* units)
{
    constexpr std::size_t AT_ONCE = 64;
    std::uint64_t marks[AT_ONCE];
    for (std::size_t done = 0; done < blocks; done += AT_ONCE)
    {
        const std::size_t count = std::min(blocks - done, AT_ONCE);
        textKernels().markControls(bytes + done * MARKED_BLOCK, count, marks);
        for (std::size_t i = 0; i < count; ++i)
        {
            const std::size_t first = (done + i) * MARKED_BLOCK;
            for (std::uint64_t mark = marks[i]; mark != 0; mark &= mark - 1)
            {
                const std::size_t place = first + static_cast<std::size_t>(std::countr_zero(mark));
                units[place] = MIDDLE_UNITS[bytes[place] & 0x1F];
            }
        }
    }
}

}  // namespace

Text decodeWindows1252(std::string_view bytes)
{
    Text text;
    resizeAndFill(text, bytes.size(),
                  [&](Char* units)
                  {
                      textKernels().widenBytes(bytes.data(), bytes.size(), units);
                      const std::size_t blocks = bytes.size() / MARKED_BLOCK;
                      mendBlocks(bytes.data(), blocks, units);
                      for (std::size_t i = blocks * MARKED_BLOCK; i < bytes.size(); ++i)
                          units[i] = decodeByte(static_cast<unsigned char>(bytes[i]));
                  });
    return text;
}

std::string encodeWindows1252(TextView text)
{
    std::string bytes;
    resizeAndFill(bytes, text.size(),
                  [&](char* buffer)
                  {
                      std::size_t i = 0;
                      for (; text.size() - i >= ENCODED_BLOCK; i += ENCODED_BLOCK)
                          encodeBlock(text.data() + i, buffer + i);
                      for (; i < text.size(); ++i) buffer[i] = encodeUnit(text[i]);
                  });
    return bytes;
}

}  // namespace Oxa_1_1::text
