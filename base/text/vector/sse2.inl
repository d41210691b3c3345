// Vectors of 128 bits. Included like scan.inl.

#include "base/text/vector/escape.inl"

struct Sse2
{
    using Half = Scalar;
    using Register = __m128i;
    static constexpr std::size_t UNITS = 8;
    static constexpr unsigned ALL = 0xFFFF;

    static Register load(const Char* units) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(units)); }
    static Register loadBytes(const char* bytes) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)); }
    static void store(Register r, Char* units) { _mm_storeu_si128(reinterpret_cast<__m128i*>(units), r); }
    static Register splat(Char c) { return _mm_set1_epi16(static_cast<short>(c)); }
    static Register equal(Register a, Register b) { return _mm_cmpeq_epi16(a, b); }
    static Register either(Register a, Register b) { return _mm_or_si128(a, b); }
    static Register both(Register a, Register b) { return _mm_and_si128(a, b); }
    static Register butNot(Register a, Register b) { return _mm_andnot_si128(b, a); }

    // Masks have two bits a unit.
    static unsigned mask(Register r) { return static_cast<unsigned>(_mm_movemask_epi8(r)); }
    static std::size_t firstUnit(unsigned mask) { return static_cast<std::size_t>(trailingZeros(mask)) / 2; }
    static unsigned withoutFirst(unsigned mask)
    {
        mask &= mask - 1;
        return mask & (mask - 1);
    }

    static bool isAscii(Register r) { return mask(equal(_mm_and_si128(r, splat(0xFF80)), _mm_setzero_si128())) == ALL; }

    static Register lowerAscii(Register r)
    {
        // Brought to the bottom of the signed range, 'A' to 'Z' are one comparison.
        const Register shifted = _mm_sub_epi16(r, splat(static_cast<Char>('A' + 0x8000)));
        const Register upper = _mm_cmplt_epi16(shifted, splat(static_cast<Char>(26 + 0x8000)));
        return _mm_or_si128(r, _mm_and_si128(upper, splat(0x20)));
    }

    static void widen(const char* bytes, Char* units)
    {
        const Register block = loadBytes(bytes);
        auto* const out = reinterpret_cast<__m128i*>(units);
        _mm_storeu_si128(out, _mm_unpacklo_epi8(block, _mm_setzero_si128()));
        _mm_storeu_si128(out + 1, _mm_unpackhi_epi8(block, _mm_setzero_si128()));
    }

    static void narrow(const Char* units, char* bytes)
    {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(load(units), load(units + UNITS)));
    }

    // As signed numbers they are the lowest ones.
    static unsigned controls(const char* bytes)
    {
        return mask(_mm_cmpgt_epi8(_mm_set1_epi8(static_cast<char>(0xA0)), loadBytes(bytes)));
    }

    static std::size_t countUnits(const char* bytes)
    {
        const Register block = loadBytes(bytes);
        const unsigned starts = mask(_mm_cmpgt_epi8(block, _mm_set1_epi8(static_cast<char>(0xBF))));
        // 0xF0 and above are the bytes that stay the same when 0xF0 is their lower bound.
        const Register bound = _mm_set1_epi8(static_cast<char>(0xF0));
        const unsigned pairs = mask(_mm_cmpeq_epi8(_mm_max_epu8(block, bound), block));
        return bitCount(starts) + bitCount(pairs);
    }

    static std::size_t countBytes(const Char* units)
    {
        const Register block = load(units);
        const Register zero = _mm_setzero_si128();
        const unsigned one = mask(equal(_mm_and_si128(block, splat(0xFF80)), zero));
        const unsigned oneOrTwo = mask(equal(_mm_and_si128(block, splat(0xF800)), zero));
        const Register high = equal(_mm_and_si128(block, splat(0xFC00)), splat(0xD800));
        const Register low = equal(_mm_and_si128(load(units + 1), splat(0xFC00)), splat(0xDC00));
        const unsigned pairs = mask(_mm_and_si128(high, low));
        // Two bits a unit, so every count is halved.
        return 3 * UNITS - (bitCount(one) + bitCount(oneOrTwo)) / 2 - bitCount(pairs);
    }
};
