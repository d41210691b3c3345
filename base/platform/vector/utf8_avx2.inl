// UTF-8 by table-driven shuffles. Included like scan.inl.
//
// Decoding looks at 64 bytes at once to learn where characters end, then takes six or four characters a step: the mask
// of ends gives a shuffle that puts each into a lane of its own, where plain arithmetic makes units of them and checks
// that their bytes are what the lengths promise. Encoding is the reverse. Whatever is unusual is left to the caller.

#include "base/platform/vector/avx2.inl"

constexpr utf8_tables::DecodeTables DECODE = utf8_tables::makeDecodeTables();
constexpr auto TWO_BYTE_PACKINGS = utf8_tables::makeTwoBytePackings();
constexpr auto THREE_BYTE_PACKINGS = utf8_tables::makeThreeBytePackings();

inline __m128i load128(const void* from)
{
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}

inline void store128(void* to, __m128i value)
{
    _mm_storeu_si128(static_cast<__m128i*>(to), value);
}

inline __m128i splat16(int value)
{
    return _mm_set1_epi16(static_cast<short>(value));
}

/// Six lanes of 16 bits, each of one or two bytes. Returns ones where all is well.
inline __m128i decodeSix(__m128i lanes, Char* units)
{
    const __m128i low = _mm_and_si128(lanes, splat16(0x7F));
    const __m128i high = _mm_srli_epi16(_mm_and_si128(lanes, splat16(0x1F00)), 2);
    const __m128i result = _mm_or_si128(low, high);

    const __m128i single = _mm_cmpeq_epi16(_mm_and_si128(lanes, splat16(0xFF80)), _mm_setzero_si128());
    const __m128i pair = _mm_cmpeq_epi16(_mm_and_si128(lanes, splat16(0xE0C0)), splat16(0xC080));
    const __m128i overlong = _mm_cmpgt_epi16(splat16(0x80), result);
    store128(units, result);
    return _mm_or_si128(single, _mm_andnot_si128(overlong, pair));
}

/// Four lanes of 32 bits, each of one to three bytes.
inline __m128i decodeFour(__m128i lanes, Char* units)
{
    const __m128i low = _mm_and_si128(lanes, _mm_set1_epi32(0x7F));
    const __m128i middle = _mm_srli_epi32(_mm_and_si128(lanes, _mm_set1_epi32(0x3F00)), 2);
    const __m128i high = _mm_srli_epi32(_mm_and_si128(lanes, _mm_set1_epi32(0x0F0000)), 4);
    const __m128i result = _mm_or_si128(_mm_or_si128(low, middle), high);

    const __m128i single =
        _mm_cmpeq_epi32(_mm_and_si128(lanes, _mm_set1_epi32(static_cast<int>(0xFFFFFF80))), _mm_setzero_si128());
    const __m128i pair = _mm_and_si128(
        _mm_cmpeq_epi32(_mm_and_si128(lanes, _mm_set1_epi32(static_cast<int>(0xFFFFE0C0))), _mm_set1_epi32(0xC080)),
        _mm_cmpgt_epi32(result, _mm_set1_epi32(0x7F)));
    const __m128i surrogate =
        _mm_cmpeq_epi32(_mm_and_si128(result, _mm_set1_epi32(0xF800)), _mm_set1_epi32(0xD800));
    const __m128i triple = _mm_andnot_si128(
        surrogate,
        _mm_and_si128(_mm_cmpeq_epi32(_mm_and_si128(lanes, _mm_set1_epi32(static_cast<int>(0xFFF0C0C0))),
                                      _mm_set1_epi32(0xE08080)),
                      _mm_cmpgt_epi32(result, _mm_set1_epi32(0x7FF))));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(units), _mm_packus_epi32(result, result));
    return _mm_or_si128(single, _mm_or_si128(pair, triple));
}

/// The bits of 64 bytes: those that are not ASCII, and those behind which a character begins.
struct ByteMasks
{
    explicit ByteMasks(const char* bytes)
    {
        const __m256i first = Avx2::loadBytes(bytes);
        const __m256i second = Avx2::loadBytes(bytes + 32);
        notAscii = joined(first, second);
        const __m256i bound = _mm256_set1_epi8(static_cast<char>(0xC0));
        ends = ~joined(_mm256_cmpgt_epi8(bound, first), _mm256_cmpgt_epi8(bound, second)) >> 1;
    }

    static std::uint64_t joined(__m256i low, __m256i high)
    {
        return Avx2::mask(low) | static_cast<std::uint64_t>(Avx2::mask(high)) << 32;
    }

    std::uint64_t notAscii;
    std::uint64_t ends;
};

/// A character of four bytes, as a surrogate pair.
inline bool decodeLong(const char* bytes, Char* units)
{
    const auto byte = [bytes](int i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])); };
    const std::uint32_t c = (byte(0) & 7) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F);
    const bool shaped = (byte(0) & 0xF8) == 0xF0 && (byte(1) & 0xC0) == 0x80 && (byte(2) & 0xC0) == 0x80 &&
                        (byte(3) & 0xC0) == 0x80;
    if (!shaped || c < 0x10000 || c > 0x10FFFF) return false;
    units[0] = static_cast<Char>(0xD7C0 + (c >> 10));
    units[1] = static_cast<Char>(0xDC00 + (c & 0x3FF));
    return true;
}

inline Progress decodeUtf8Avx2(const char* bytes, std::size_t length, Char* units, std::size_t capacity)
{
    constexpr std::size_t BLOCK = 64;
    // The last byte's end is not known, and a step looks at 12 bytes but loads 16.
    constexpr std::size_t LAST_START = BLOCK - 13;

    std::size_t read = 0;
    std::size_t written = 0;
    while (length - read >= BLOCK + 16 && capacity - written >= BLOCK + 16)
    {
        const ByteMasks masks(bytes + read);
        if (masks.notAscii == 0)
        {
            Avx2::widen(bytes + read, units + written);
            Avx2::widen(bytes + read + BLOCK / 2, units + written + BLOCK / 2);
            read += BLOCK;
            written += BLOCK;
            continue;
        }

        std::size_t position = 0;
        const std::size_t blockStart = written;
        // Lanes are checked once for the whole block.
        __m128i good = _mm_set1_epi8(-1);
        while (position <= LAST_START)
        {
            const char* const from = bytes + read + position;
            Char* const to = units + written;
            if ((masks.notAscii >> position & 0xFFFF) == 0 && position <= BLOCK - 16)
            {
                _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), _mm256_cvtepu8_epi16(load128(from)));
                position += 16;
                written += 16;
                continue;
            }
            const utf8_tables::Step step = DECODE.steps[masks.ends >> position & 0xFFF];
            if (step.length == 0)
            {
                if (!decodeLong(from, to)) break;
                position += 4;
                written += 2;
                continue;
            }
            const __m128i lanes = _mm_shuffle_epi8(load128(from), load128(&DECODE.shuffles[step.shuffle]));
            const bool six = step.shuffle < utf8_tables::FIRST_OF_FOUR;
            good = _mm_and_si128(good, six ? decodeSix(lanes, to) : decodeFour(lanes, to));
            position += step.length;
            written += six ? 6 : 4;
        }
        if (_mm_movemask_epi8(good) != 0xFFFF) return {read, blockStart};
        read += position;
        // Stopped by something that a step cannot take.
        if (position <= LAST_START) break;
    }
    return {read, written};
}

/// Eight units below 0x800.
inline std::size_t encodePairs(__m128i units, char* bytes)
{
    const __m128i one = _mm_cmpeq_epi16(_mm_and_si128(units, splat16(0xFF80)), _mm_setzero_si128());
    const __m128i lead = _mm_and_si128(_mm_srli_epi16(units, 6), splat16(0x1F));
    const __m128i rest = _mm_slli_epi16(_mm_and_si128(units, splat16(0x3F)), 8);
    const __m128i two = _mm_or_si128(_mm_or_si128(lead, rest), splat16(0x80C0));
    const auto ones = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(one, one))) & 0xFF;
    const utf8_tables::Packing& packing = TWO_BYTE_PACKINGS[ones];
    store128(bytes, _mm_shuffle_epi8(_mm_blendv_epi8(two, units, one), load128(&packing.shuffle)));
    return packing.length;
}

/// Eight units without surrogates.
inline std::size_t encodeTriples(__m128i units, char* bytes)
{
    const __m256i lanes = _mm256_cvtepu16_epi32(units);
    const __m256i last = _mm256_and_si256(lanes, _mm256_set1_epi32(0x3F));
    const __m256i above = _mm256_srli_epi32(lanes, 6);
    const __m256i middle = _mm256_and_si256(above, _mm256_set1_epi32(0x3F));
    const __m256i three = _mm256_or_si256(
        _mm256_or_si256(_mm256_srli_epi32(lanes, 12), _mm256_slli_epi32(middle, 8)),
        _mm256_or_si256(_mm256_slli_epi32(last, 16), _mm256_set1_epi32(0x8080E0)));
    const __m256i two = _mm256_or_si256(_mm256_or_si256(above, _mm256_slli_epi32(last, 8)), _mm256_set1_epi32(0x80C0));
    const __m256i atMostTwo = _mm256_cmpgt_epi32(_mm256_set1_epi32(0x800), lanes);
    const __m256i one = _mm256_cmpgt_epi32(_mm256_set1_epi32(0x80), lanes);
    const __m256i all = _mm256_blendv_epi8(_mm256_blendv_epi8(three, two, atMostTwo), lanes, one);

    const auto shorts = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(atMostTwo)));
    const auto ones = static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(one)));
    const utf8_tables::Packing& front = THREE_BYTE_PACKINGS[(shorts & 0xF) | (ones & 0xF) << 4];
    const utf8_tables::Packing& back = THREE_BYTE_PACKINGS[shorts >> 4 | (ones & 0xF0)];
    store128(bytes, _mm_shuffle_epi8(_mm256_castsi256_si128(all), load128(&front.shuffle)));
    store128(bytes + front.length,
             _mm_shuffle_epi8(_mm256_extracti128_si256(all, 1), load128(&back.shuffle)));
    return static_cast<std::size_t>(front.length) + back.length;
}

/// A surrogate pair.
inline bool encodeLong(const Char* units, char* bytes)
{
    if ((units[0] & 0xFC00) != 0xD800 || (units[1] & 0xFC00) != 0xDC00) return false;
    const std::uint32_t c = 0x10000 + ((units[0] & 0x3FFu) << 10) + (units[1] & 0x3FFu);
    bytes[0] = static_cast<char>(0xF0 | c >> 18);
    bytes[1] = static_cast<char>(0x80 | (c >> 12 & 0x3F));
    bytes[2] = static_cast<char>(0x80 | (c >> 6 & 0x3F));
    bytes[3] = static_cast<char>(0x80 | (c & 0x3F));
    return true;
}

inline Progress encodeUtf8Avx2(const Char* units, std::size_t length, char* bytes, std::size_t capacity)
{
    // Stores reach up to 16 bytes behind 24 that count.
    constexpr std::size_t ROOM = 40;

    std::size_t read = 0;
    std::size_t written = 0;
    while (length - read >= 16 && capacity - written >= ROOM)
    {
        const __m256i wide = Avx2::load(units + read);
        if (Avx2::isAscii(wide))
        {
            const __m128i packed = _mm_packus_epi16(_mm256_castsi256_si128(wide), _mm256_extracti128_si256(wide, 1));
            store128(bytes + written, packed);
            read += 16;
            written += 16;
            continue;
        }
        const __m128i block = _mm256_castsi256_si128(wide);
        const __m128i top = _mm_and_si128(block, splat16(0xF800));
        if (_mm_testz_si128(block, splat16(0xF800)) != 0)
        {
            written += encodePairs(block, bytes + written);
            read += 8;
            continue;
        }
        const auto surrogates = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(top, splat16(0xD800))));
        if (surrogates == 0)
        {
            written += encodeTriples(block, bytes + written);
            read += 8;
            continue;
        }
        // What stands before the pair, one by one.
        const std::size_t before = Sse2::firstUnit(surrogates);
        for (std::size_t i = 0; i < before; ++i)
        {
            const Char c = units[read + i];
            if (c < 0x80)
            {
                bytes[written++] = static_cast<char>(c);
                continue;
            }
            if (c >= 0x800) bytes[written++] = static_cast<char>(0xE0 | c >> 12);
            bytes[written++] = static_cast<char>(c < 0x800 ? 0xC0 | c >> 6 : 0x80 | (c >> 6 & 0x3F));
            bytes[written++] = static_cast<char>(0x80 | (c & 0x3F));
        }
        read += before;
        if (!encodeLong(units + read, bytes + written)) break;
        read += 2;
        written += 4;
    }
    return {read, written};
}
