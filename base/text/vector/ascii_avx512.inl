// ASCII by vectors of 512 bits, whose masks reach every byte: what is left behind the last whole vector is one more.
// Included like scan.inl.

#include "base/text/vector/avx2.inl"

constexpr std::size_t VECTOR_BYTES = 64;
constexpr std::size_t VECTOR_UNITS = 32;

/// The lowest `count` bits; all for 64 and more.
inline std::uint64_t lowBits(std::size_t count)
{
    return _bzhi_u64(~std::uint64_t(0), static_cast<unsigned>(count < 64 ? count : 64));
}

inline __mmask32 lowUnits(std::size_t count)
{
    return static_cast<__mmask32>(lowBits(count < VECTOR_UNITS ? count : VECTOR_UNITS));
}

inline std::size_t bitCount64(std::uint64_t mask) { return static_cast<std::size_t>(_mm_popcnt_u64(mask)); }

inline __m512i splat512(int value) { return _mm512_set1_epi16(static_cast<short>(value)); }

/// The first bytes or units of `count`, at most a vector of them; zeros behind.
/// @{
inline __m512i loadSome(const char* bytes, std::size_t count)
{
    if (count >= VECTOR_BYTES) return _mm512_loadu_si512(bytes);
    return _mm512_maskz_loadu_epi8(lowBits(count), bytes);
}

inline __m512i loadSome(const Char* units, std::size_t count)
{
    if (count >= VECTOR_UNITS) return _mm512_loadu_si512(units);
    return _mm512_maskz_loadu_epi16(lowUnits(count), units);
}
/// @}

inline void widenBlock(__m512i bytes, Char* units)
{
    _mm512_storeu_si512(units, _mm512_cvtepu8_epi16(_mm512_castsi512_si256(bytes)));
    _mm512_storeu_si512(units + VECTOR_UNITS, _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(bytes, 1)));
}

/// Of the first `count` bytes only.
inline void widenSome(__m512i bytes, std::size_t count, Char* units)
{
    const std::uint64_t mask = lowBits(count);
    _mm512_mask_storeu_epi16(units, static_cast<__mmask32>(mask), _mm512_cvtepu8_epi16(_mm512_castsi512_si256(bytes)));
    if (count <= VECTOR_UNITS) return;
    _mm512_mask_storeu_epi16(units + VECTOR_UNITS, static_cast<__mmask32>(mask >> VECTOR_UNITS),
                             _mm512_cvtepu8_epi16(_mm512_extracti64x4_epi64(bytes, 1)));
}

inline std::size_t countAsciiBytesAvx512(const char* bytes, std::size_t length)
{
    std::size_t i = 0;
    for (; length - i >= 4 * VECTOR_BYTES; i += 4 * VECTOR_BYTES)
    {
        const char* const from = bytes + i;
        const __m512i low = _mm512_or_si512(_mm512_loadu_si512(from), _mm512_loadu_si512(from + VECTOR_BYTES));
        const __m512i high =
            _mm512_or_si512(_mm512_loadu_si512(from + 2 * VECTOR_BYTES), _mm512_loadu_si512(from + 3 * VECTOR_BYTES));
        if (_mm512_movepi8_mask(_mm512_or_si512(low, high)) != 0) return i;
    }
    for (; i < length; i += VECTOR_BYTES)
        if (_mm512_movepi8_mask(loadSome(bytes + i, length - i)) != 0) return i;
    return length;
}

inline std::size_t countAsciiUnitsAvx512(const Char* units, std::size_t length)
{
    const __m512i beyond = splat512(0xFF80);
    std::size_t i = 0;
    for (; length - i >= 4 * VECTOR_UNITS; i += 4 * VECTOR_UNITS)
    {
        const Char* const from = units + i;
        const __m512i low = _mm512_or_si512(_mm512_loadu_si512(from), _mm512_loadu_si512(from + VECTOR_UNITS));
        const __m512i high =
            _mm512_or_si512(_mm512_loadu_si512(from + 2 * VECTOR_UNITS), _mm512_loadu_si512(from + 3 * VECTOR_UNITS));
        if (_mm512_test_epi16_mask(_mm512_or_si512(low, high), beyond) != 0) return i;
    }
    for (; i < length; i += VECTOR_UNITS)
        if (_mm512_test_epi16_mask(loadSome(units + i, length - i), beyond) != 0) return i;
    return length;
}

inline void widenBytesAvx512(const char* bytes, std::size_t length, Char* units)
{
    std::size_t i = 0;
    for (; length - i >= VECTOR_BYTES; i += VECTOR_BYTES) widenBlock(_mm512_loadu_si512(bytes + i), units + i);
    if (i < length) widenSome(loadSome(bytes + i, length - i), length - i, units + i);
}

inline void narrowAsciiAvx512(const Char* units, std::size_t length, char* bytes)
{
    std::size_t i = 0;
    for (; length - i >= VECTOR_UNITS; i += VECTOR_UNITS)
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes + i), _mm512_cvtepi16_epi8(_mm512_loadu_si512(units + i)));
    if (i < length)
        _mm256_mask_storeu_epi8(bytes + i, lowUnits(length - i), _mm512_cvtepi16_epi8(loadSome(units + i, length - i)));
}

inline void markControlsAvx512(const char* bytes, std::size_t blocks, std::uint64_t* marks)
{
    const __m512i bound = _mm512_set1_epi8(static_cast<char>(0xA0));
    for (std::size_t i = 0; i < blocks; ++i)
        marks[i] = _mm512_cmplt_epi8_mask(_mm512_loadu_si512(bytes + i * VECTOR_BYTES), bound);
}

inline __m512i lowerAscii512(__m512i units)
{
    const __mmask32 upper = _mm512_cmplt_epu16_mask(_mm512_sub_epi16(units, splat512('A')), splat512(26));
    return _mm512_mask_add_epi16(units, upper, units, splat512(0x20));
}

/// Where zeros or other units stand among the `count` at both, at most a vector of them.
template <bool IGNORES_CASE>
unsigned findStops(const Char* a, const Char* b, std::size_t count)
{
    const __m512i unitsA = loadSome(a, count);
    const __m512i unitsB = loadSome(b, count);
    const __mmask32 zeros = _mm512_testn_epi16_mask(unitsA, unitsA) & lowUnits(count);
    if (IGNORES_CASE) return zeros | _mm512_cmpneq_epu16_mask(lowerAscii512(unitsA), lowerAscii512(unitsB));
    return zeros | _mm512_cmpneq_epu16_mask(unitsA, unitsB);
}

/// From the unit `i` on. Only letters beyond ASCII come here, so that others are spared what calls for them take.
OXA_KEPT_APART int compareLoweredFrom512(const Char* a, const Char* b, std::size_t length, std::size_t i)
{
    for (; i < length; i += VECTOR_UNITS)
        for (unsigned stops = findStops<true>(a + i, b + i, length - i); stops != 0; stops &= stops - 1)
        {
            const std::size_t place = i + static_cast<std::size_t>(trailingZeros(stops));
            const int difference = a[place] == b[place] ? 0 : lowerUnit(a[place]) - lowerUnit(b[place]);
            if (difference != 0 || a[place] == 0) return difference;
        }
    return 0;
}

template <bool IGNORES_CASE>
int compareAvx512(const Char* a, const Char* b, std::size_t length)
{
    for (std::size_t i = 0; i < length; i += VECTOR_UNITS)
    {
        const unsigned stops = findStops<IGNORES_CASE>(a + i, b + i, length - i);
        if (stops == 0) continue;
        const std::size_t place = i + static_cast<std::size_t>(trailingZeros(stops));
        if (!IGNORES_CASE) return a[place] - b[place];
        if ((a[place] | b[place]) < 0x80) return lowerAsciiUnit(a[place]) - lowerAsciiUnit(b[place]);
        return compareLoweredFrom512(a, b, length, place);
    }
    return 0;
}
