#pragma once

// The best plain loops for exactly the work, as marks to aim at. They need AVX2, as the goals do. A result goes to
// fresh memory that nothing else has filled, because clearing it first can take longer than the work.

#include <immintrin.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace Oxa_1_1::bench::floors
{

#define OXA_AVX2 __attribute__((target("avx2,bmi,popcnt")))

using Units = std::unique_ptr<char16_t[]>;
using Bytes = std::unique_ptr<char[]>;

inline constexpr std::size_t BLOCK = 16;

OXA_AVX2 inline __m256i load(const char16_t* from)
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
}

OXA_AVX2 inline void store(char16_t* to, __m256i units) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), units); }

OXA_AVX2 inline __m128i loadBytes(const char* from) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from)); }

/// The top bit of each byte: two for each unit of which all bits are set.
OXA_AVX2 inline unsigned mask(__m256i units) { return static_cast<unsigned>(_mm256_movemask_epi8(units)); }

inline std::size_t firstUnit(unsigned hits) { return static_cast<std::size_t>(std::countr_zero(hits)) / 2; }

/// Of ASCII only; null for any other.
OXA_AVX2 inline Units widen(std::string_view bytes)
{
    auto text = std::make_unique_for_overwrite<char16_t[]>(bytes.size());
    __m128i all = _mm_setzero_si128();
    std::size_t i = 0;
    for (; i + BLOCK <= bytes.size(); i += BLOCK)
    {
        const __m128i block = loadBytes(bytes.data() + i);
        all = _mm_or_si128(all, block);
        store(text.get() + i, _mm256_cvtepu8_epi16(block));
    }
    int rest = 0;
    for (; i < bytes.size(); ++i)
    {
        text[i] = static_cast<unsigned char>(bytes[i]);
        rest |= text[i];
    }
    return _mm_movemask_epi8(all) == 0 && rest < 0x80 ? std::move(text) : nullptr;
}

/// Of ASCII only; null for any other.
OXA_AVX2 inline Bytes narrow(std::u16string_view text)
{
    auto bytes = std::make_unique_for_overwrite<char[]>(text.size());
    __m256i all = _mm256_setzero_si256();
    std::size_t i = 0;
    for (; i + 2 * BLOCK <= text.size(); i += 2 * BLOCK)
    {
        const __m256i first = load(text.data() + i);
        const __m256i second = load(text.data() + i + BLOCK);
        all = _mm256_or_si256(all, _mm256_or_si256(first, second));
        // Packing works in halves of the register; the permutation puts them back in order.
        const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), 0xD8);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes.get() + i), packed);
    }
    int rest = 0;
    for (; i < text.size(); ++i)
    {
        bytes[i] = static_cast<char>(text[i]);
        rest |= text[i];
    }
    const __m256i beyond = _mm256_set1_epi16(static_cast<short>(0xFF80));
    return _mm256_testz_si256(all, beyond) != 0 && rest < 0x80 ? std::move(bytes) : nullptr;
}

/// The units of the bytes 0x80 to 0x9F of Windows-1252; all other bytes are their own unit.
inline constexpr char16_t MIDDLE[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                        0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

inline char16_t unitOf(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    return value >= 0x80 && value < 0xA0 ? MIDDLE[value - 0x80] : char16_t{value};
}

/// Widens all, then mends the few that differ.
OXA_AVX2 inline Units fromAnsi(std::string_view bytes)
{
    auto text = std::make_unique_for_overwrite<char16_t[]>(bytes.size());
    const __m256i range = _mm256_set1_epi8(static_cast<char>(0xE0));
    const __m256i middle = _mm256_set1_epi8(static_cast<char>(0x80));
    std::size_t i = 0;
    for (; i + 2 * BLOCK <= bytes.size(); i += 2 * BLOCK)
    {
        const __m256i block = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes.data() + i));
        store(text.get() + i, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(block)));
        store(text.get() + i + BLOCK, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(block, 1)));
        for (unsigned hits = mask(_mm256_cmpeq_epi8(_mm256_and_si256(block, range), middle)); hits != 0;
             hits &= hits - 1)
        {
            const std::size_t place = i + static_cast<std::size_t>(std::countr_zero(hits));
            text[place] = unitOf(bytes[place]);
        }
    }
    for (; i < bytes.size(); ++i) text[i] = unitOf(bytes[i]);
    return text;
}

inline constexpr auto POWERS_OF_TEN = []
{
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 10;
    return powers;
}();

inline constexpr auto DIGIT_PAIRS = []
{
    std::array<char16_t, 200> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i)
        pairs[i] = static_cast<char16_t>('0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
    return pairs;
}();

inline std::size_t countDigits(std::uint64_t value)
{
    std::size_t count = 1;
    while (count < POWERS_OF_TEN.size() && value >= POWERS_OF_TEN[count]) ++count;
    return count;
}

/// Exactly `count` digits.
inline char16_t* writeDigits(char16_t* out, std::uint64_t value, std::size_t count)
{
    char16_t* p = out + count;
    for (; p - out >= 2; value /= 100) std::memcpy(p -= 2, &DIGIT_PAIRS[value % 100 * 2], 2 * sizeof(char16_t));
    if (p != out) *out = static_cast<char16_t>('0' + value);
    return out + count;
}

/// What the library's rule for doubles asks of printf's %.*g, by a table instead of a logarithm.
inline int precisionOf(double value)
{
    if (value < 1) return 8;
    int digits = 0;
    for (double power = 1; power < value; power *= 10) ++digits;
    return digits + 9;
}

/// Nine places behind the point from one exact product of 128 bits; what does not fit goes the long way.
inline char16_t* writeDouble(char16_t* out, double value)
{
    constexpr std::uint64_t UNIT = 1000000000;
    if (!(value >= 1 && value < 1e10))
    {
        char buffer[32];
        const char* const end =
            std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, precisionOf(value)).ptr;
        return std::copy(buffer, const_cast<char*>(end), out);
    }
    __extension__ using Wide = unsigned __int128;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const std::uint64_t mantissa = (bits & 0xFFFFFFFFFFFFF) | 0x10000000000000;
    const int shift = 1075 - static_cast<int>(bits >> 52);
    const Wide product = Wide{mantissa} * UNIT;
    auto scaled = static_cast<std::uint64_t>(product >> shift);
    const auto rest = static_cast<std::uint64_t>(product) << (64 - shift);
    constexpr std::uint64_t HALF = std::uint64_t{1} << 63;
    scaled += rest > HALF || (rest == HALF && scaled % 2 != 0);

    out = writeDigits(out, scaled / UNIT, countDigits(scaled / UNIT));
    if (scaled % UNIT == 0) return out;
    *out++ = '.';
    out = writeDigits(out, scaled % UNIT, 9);
    while (out[-1] == '0') --out;
    return out;
}

/// A name, a number and a double for each value, with blanks between them. Nobody who appends knows how much is to
/// come, so the list grows by doubling.
inline Units buildList(std::u16string_view name, const double* values, int count)
{
    const std::size_t widest = name.size() + 2 + 10 + 32;
    std::size_t capacity = widest + 1;
    auto list = std::make_unique_for_overwrite<char16_t[]>(capacity);
    std::size_t size = 0;
    for (int i = 0; i < count; ++i)
    {
        if (capacity - size <= widest)
        {
            auto former = std::exchange(list, std::make_unique_for_overwrite<char16_t[]>(capacity *= 2));
            std::memcpy(list.get(), former.get(), size * sizeof(char16_t));
        }
        char16_t* out = list.get() + size;
        std::memcpy(out, name.data(), name.size() * sizeof(char16_t));
        out += name.size();
        *out++ = ' ';
        const auto number = static_cast<std::uint64_t>(i);
        out = writeDigits(out, number, countDigits(number));
        *out++ = ' ';
        size = static_cast<std::size_t>(writeDouble(out, values[i]) - list.get());
    }
    list[size] = 0;
    return list;
}

/// Cuts what it read off the front.
inline int readInt(std::u16string& text)
{
    const auto isDigit = [](char16_t c) { return c >= '0' && c <= '9'; };
    std::size_t i = 0;
    while (i < text.size() && !isDigit(text[i])) ++i;
    int value = 0;
    for (; i < text.size() && isDigit(text[i]); ++i) value = value * 10 + (text[i] - '0');
    text.erase(0, i);
    return value;
}

inline bool isDigit(char16_t c) { return c >= '0' && c <= '9'; }

/// The digits at `p`, behind which it goes, appended to those of `value`.
template <class T>
void scanDigits(const char16_t*& p, const char16_t* end, T& value)
{
    for (; p != end && isDigit(*p); ++p) value = value * 10 + static_cast<T>(*p - '0');
}

/// Whether a minus sign stands before the next number, at whose first digit or point `p` stands afterwards.
inline bool skipToNumber(const char16_t*& p, const char16_t* end)
{
    while (p != end && !isDigit(*p) && *p != '-' && *p != '.') ++p;
    const bool negative = p != end && *p == '-';
    p += negative;
    return negative;
}

/// Of numbers that fit.
inline int scanInt(const char16_t*& p, const char16_t* end)
{
    const bool negative = skipToNumber(p, end);
    int value = 0;
    scanDigits(p, end, value);
    return negative ? -value : value;
}

/// Of numbers without exponent whose digits a double holds.
inline double scanDouble(const char16_t*& p, const char16_t* end)
{
    static constexpr std::array POWERS{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const bool negative = skipToNumber(p, end);
    std::uint64_t digits = 0;
    scanDigits(p, end, digits);
    std::size_t places = 0;
    if (p != end && *p == '.')
    {
        const char16_t* const fraction = ++p;
        scanDigits(p, end, digits);
        places = static_cast<std::size_t>(p - fraction);
    }
    const double value = static_cast<double>(digits) / POWERS[places];
    return negative ? -value : value;
}

OXA_AVX2 inline std::size_t findUnit(std::u16string_view text, char16_t c)
{
    const __m256i wanted = _mm256_set1_epi16(static_cast<short>(c));
    std::size_t i = 0;
    for (; i + 4 * BLOCK <= text.size(); i += 4 * BLOCK)
    {
        const char16_t* const from = text.data() + i;
        const __m256i first =
            _mm256_or_si256(_mm256_cmpeq_epi16(load(from), wanted), _mm256_cmpeq_epi16(load(from + BLOCK), wanted));
        const __m256i second = _mm256_or_si256(_mm256_cmpeq_epi16(load(from + 2 * BLOCK), wanted),
                                               _mm256_cmpeq_epi16(load(from + 3 * BLOCK), wanted));
        if (mask(_mm256_or_si256(first, second)) != 0) break;
    }
    while (i < text.size() && text[i] != c) ++i;
    return i;
}

/// Looks only where both the first and the last unit of the pattern fit.
OXA_AVX2 inline std::size_t findText(std::u16string_view text, std::u16string_view pattern)
{
    const __m256i first = _mm256_set1_epi16(static_cast<short>(pattern.front()));
    const __m256i last = _mm256_set1_epi16(static_cast<short>(pattern.back()));
    std::size_t i = 0;
    for (; i + BLOCK + pattern.size() <= text.size(); i += BLOCK)
    {
        const char16_t* const from = text.data() + i;
        const __m256i hits = _mm256_and_si256(_mm256_cmpeq_epi16(load(from), first),
                                              _mm256_cmpeq_epi16(load(from + pattern.size() - 1), last));
        for (unsigned places = mask(hits); places != 0; places &= ~(3U << (2 * firstUnit(places))))
        {
            const std::size_t place = i + firstUnit(places);
            if (std::memcmp(text.data() + place, pattern.data(), pattern.size() * sizeof(char16_t)) == 0) return place;
        }
    }
    return text.find(pattern, i);
}

OXA_AVX2 inline __m256i folded(const char16_t* from)
{
    const __m256i units = load(from);
    const __m256i upper = _mm256_and_si256(_mm256_cmpgt_epi16(units, _mm256_set1_epi16('A' - 1)),
                                           _mm256_cmpgt_epi16(_mm256_set1_epi16('Z' + 1), units));
    return _mm256_or_si256(units, _mm256_and_si256(upper, _mm256_set1_epi16(0x20)));
}

/// The order of two ASCII texts whatever their case. The last block overlaps the one before it.
OXA_AVX2 inline int compareFolded(std::u16string_view a, std::u16string_view b)
{
    const auto fold = [](char16_t c) { return c >= 'A' && c <= 'Z' ? c | 0x20 : int{c}; };
    const std::size_t length = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < length && length >= BLOCK; i += BLOCK)
    {
        const std::size_t place = std::min(i, length - BLOCK);
        const unsigned different = ~mask(_mm256_cmpeq_epi16(folded(a.data() + place), folded(b.data() + place)));
        if (different == 0) continue;
        const std::size_t unit = place + firstUnit(different);
        return fold(a[unit]) - fold(b[unit]);
    }
    for (std::size_t i = 0; i < length && length < BLOCK; ++i)
        if (fold(a[i]) != fold(b[i])) return fold(a[i]) - fold(b[i]);
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

OXA_AVX2 inline __m256i beyondAscii(__m256i units)
{
    return _mm256_cmpgt_epi16(_mm256_xor_si256(units, _mm256_set1_epi16(static_cast<short>(0x8000))),
                              _mm256_set1_epi16(static_cast<short>(0x807F)));
}

OXA_AVX2 inline __m256i escapedByLetter(__m256i units)
{
    const auto is = [units](char c) OXA_AVX2 { return _mm256_cmpeq_epi16(units, _mm256_set1_epi16(c)); };
    return _mm256_or_si256(_mm256_or_si256(is('\n'), is('\r')), _mm256_or_si256(is('"'), is('\\')));
}

inline bool isEscapedByLetter(char16_t c) { return c == '\n' || c == '\r' || c == '"' || c == '\\'; }

/// Returns its length.
inline std::size_t writeEscape(char16_t* out, char16_t c)
{
    out[0] = '\\';
    if (c < 0x80)
    {
        out[1] = c == '\n' ? u'n' : c == '\r' ? u'r' : c;
        return 2;
    }
    out[1] = 'u';
    for (int i = 0; i < 4; ++i) out[2 + i] = u"0123456789ABCDEF"[(c >> (12 - 4 * i)) & 15];
    return 6;
}

inline std::size_t sumOf(const std::uint16_t (&counts)[BLOCK])
{
    std::size_t sum = 0;
    for (const std::uint16_t count : counts) sum += count;
    return sum;
}

/// Of less than a million units: the hits of each place in a block are counted there.
OXA_AVX2 inline std::size_t escapedSize(std::u16string_view text)
{
    __m256i letters = _mm256_setzero_si256();
    __m256i others = _mm256_setzero_si256();
    std::size_t i = 0;
    for (; i + BLOCK <= text.size(); i += BLOCK)
    {
        const __m256i units = load(text.data() + i);
        letters = _mm256_sub_epi16(letters, escapedByLetter(units));
        others = _mm256_sub_epi16(others, beyondAscii(units));
    }
    std::uint16_t counts[2][BLOCK];
    std::memcpy(counts[0], &letters, sizeof letters);
    std::memcpy(counts[1], &others, sizeof others);
    std::size_t size = text.size() + sumOf(counts[0]) + 5 * sumOf(counts[1]);
    for (; i < text.size(); ++i) size += isEscapedByLetter(text[i]) ? 1 : text[i] < 0x80 ? 0 : 5;
    return size;
}

/// Copies each block; behind each escape in it, its rest is copied once more, as far as another block would reach.
OXA_AVX2 inline Units escape(std::u16string_view text)
{
    auto result = std::make_unique_for_overwrite<char16_t[]>(escapedSize(text) + 1);
    char16_t* out = result.get();
    const char16_t* from = text.data();
    const char16_t* const end = from + text.size();
    for (; end - from >= static_cast<std::ptrdiff_t>(2 * BLOCK); from += BLOCK, out += BLOCK)
    {
        const __m256i units = load(from);
        store(out, units);
        unsigned hits = mask(_mm256_or_si256(escapedByLetter(units), beyondAscii(units)));
        for (; hits != 0; hits &= ~(3U << (2 * firstUnit(hits))))
        {
            const std::size_t place = firstUnit(hits);
            const std::size_t size = writeEscape(out + place, from[place]);
            store(out + place + size, load(from + place + 1));
            out += size - 1;
        }
    }
    for (; from != end; ++from)
    {
        if (isEscapedByLetter(*from) || *from >= 0x80)
            out += writeEscape(out, *from);
        else
            *out++ = *from;
    }
    *out = 0;
    return result;
}

#undef OXA_AVX2

}  // namespace Oxa_1_1::bench::floors
