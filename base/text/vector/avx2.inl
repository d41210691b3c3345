// Vectors of 256 bits. Included like scan.inl.

#include "base/text/vector/sse2.inl"

struct Avx2
{
    using Half = Sse2;
    using Register = __m256i;
    static constexpr std::size_t UNITS = 16;
    static constexpr unsigned ALL = 0xFFFFFFFF;

    static Register load(const Char* units) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(units)); }
    static Register loadBytes(const char* bytes) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes)); }
    static void store(Register r, Char* units) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(units), r); }
    static Register splat(Char c) { return _mm256_set1_epi16(static_cast<short>(c)); }
    static Register equal(Register a, Register b) { return _mm256_cmpeq_epi16(a, b); }
    static Register either(Register a, Register b) { return _mm256_or_si256(a, b); }
    static Register both(Register a, Register b) { return _mm256_and_si256(a, b); }
    static Register butNot(Register a, Register b) { return _mm256_andnot_si256(b, a); }

    static unsigned mask(Register r) { return static_cast<unsigned>(_mm256_movemask_epi8(r)); }
    static std::size_t firstUnit(unsigned mask) { return Sse2::firstUnit(mask); }
    static unsigned withoutFirst(unsigned mask) { return Sse2::withoutFirst(mask); }

    static bool isAscii(Register r) { return _mm256_testz_si256(r, splat(0xFF80)) != 0; }

    static Register lowerAscii(Register r)
    {
        const Register shifted = _mm256_sub_epi16(r, splat(static_cast<Char>('A' + 0x8000)));
        const Register upper = _mm256_cmpgt_epi16(splat(static_cast<Char>(26 + 0x8000)), shifted);
        return _mm256_or_si256(r, _mm256_and_si256(upper, splat(0x20)));
    }

    static void widen(const char* bytes, Char* units)
    {
        auto* const out = reinterpret_cast<__m256i*>(units);
        _mm256_storeu_si256(out, _mm256_cvtepu8_epi16(Sse2::loadBytes(bytes)));
        _mm256_storeu_si256(out + 1, _mm256_cvtepu8_epi16(Sse2::loadBytes(bytes + UNITS)));
    }

    static void narrow(const Char* units, char* bytes)
    {
        const Register packed = _mm256_packus_epi16(load(units), load(units + UNITS));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), _mm256_permute4x64_epi64(packed, 0xD8));
    }

    // As signed numbers they are the lowest ones.
    static unsigned controls(const char* bytes)
    {
        return mask(_mm256_cmpgt_epi8(_mm256_set1_epi8(static_cast<char>(0xA0)), loadBytes(bytes)));
    }

    static std::size_t countUnits(const char* bytes)
    {
        const Register block = loadBytes(bytes);
        const unsigned starts = mask(_mm256_cmpgt_epi8(block, _mm256_set1_epi8(static_cast<char>(0xBF))));
        const Register bound = _mm256_set1_epi8(static_cast<char>(0xF0));
        const unsigned pairs = mask(_mm256_cmpeq_epi8(_mm256_max_epu8(block, bound), block));
        return bitCount(starts) + bitCount(pairs);
    }

    static std::size_t countBytes(const Char* units)
    {
        const Register block = load(units);
        const Register zero = _mm256_setzero_si256();
        const unsigned one = mask(equal(_mm256_and_si256(block, splat(0xFF80)), zero));
        const unsigned oneOrTwo = mask(equal(_mm256_and_si256(block, splat(0xF800)), zero));
        const Register high = equal(_mm256_and_si256(block, splat(0xFC00)), splat(0xD800));
        const Register low = equal(_mm256_and_si256(load(units + 1), splat(0xFC00)), splat(0xDC00));
        const unsigned pairs = mask(_mm256_and_si256(high, low));
        return 3 * UNITS - (bitCount(one) + bitCount(oneOrTwo)) / 2 - bitCount(pairs);
    }
};
