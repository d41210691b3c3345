// UTF-8 by vectors of 256 bits. Included like scan.inl.
//
// Decoding takes 64 bytes a block. Which of them begin characters and which continue them is known from the masks of
// their kinds alone. A unit is computed at every place, as if a character began there, from the byte at that place and
// those behind it; a shuffle from a table then closes the gaps between the places where one does. Whether each character
// is in its shortest form and in range shows in its unit; what is ill-formed is left to the caller. Encoding puts the
// bytes of each unit into a lane of its own and closes the gaps.

#include "base/text/vector/avx2.inl"

constexpr auto UNIT_PACKINGS = utf8_tables::makeUnitPackings();
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

inline __m256i splatByte(int value)
{
    return _mm256_set1_epi8(static_cast<char>(value));
}

/// Of two vectors, a bit for each byte.
inline std::uint64_t joinedMask(__m256i low, __m256i high)
{
    return Avx2::mask(low) | static_cast<std::uint64_t>(Avx2::mask(high)) << 32;
}

/// Whether each byte is, as an unsigned number, at least `bound`.
inline std::uint64_t atLeast(__m256i low, __m256i high, int bound)
{
    const __m256i bounds = splatByte(bound);
    return joinedMask(_mm256_cmpeq_epi8(_mm256_max_epu8(low, bounds), low),
                      _mm256_cmpeq_epi8(_mm256_max_epu8(high, bounds), high));
}

/// What each of 64 bytes is, a bit for each.
struct ByteKinds
{
    explicit ByteKinds(const char* bytes) : low(Avx2::loadBytes(bytes)), high(Avx2::loadBytes(bytes + 32))
    {
        notAscii = joinedMask(low, high);
        const __m256i bound = splatByte(0xC0);
        continuations = joinedMask(_mm256_cmpgt_epi8(bound, low), _mm256_cmpgt_epi8(bound, high));
        leads = notAscii & ~continuations;
        threeOrMore = atLeast(low, high, 0xE0);
        // Brought to the bottom of the range, where C0 and C1 wrap around: they begin nothing, and are sorted out rarely.
        const __m256i first = splatByte(0xC2);
        low = _mm256_sub_epi8(low, first);
        high = _mm256_sub_epi8(high, first);
        four = leads & atLeast(low, high, 0xF0 - 0xC2);
    }

    /// Whether none of `four` is a byte that begins no character.
    bool areLeads() const { return (leads & atLeast(low, high, 0xF5 - 0xC2)) == 0; }

    __m256i low;
    __m256i high;
    std::uint64_t notAscii;
    std::uint64_t continuations;
    std::uint64_t leads;
    std::uint64_t threeOrMore;
    std::uint64_t four;
};

/// The units of characters that begin at 16 places, and bits where they are not in their shortest form or not in range.
template <bool WITH_THREE, bool WITH_FOUR>
__m256i decodePlaces(const char* bytes, __m256i& faults)
{
    const auto bytesFrom = [bytes](int place) { return _mm256_cvtepu8_epi16(load128(bytes + place)); };
    const auto lowSix = [](__m256i units) { return _mm256_and_si256(units, Avx2::splat(0x3F)); };
    const __m256i lead = bytesFrom(0);
    const __m256i ascii = _mm256_cmpgt_epi16(Avx2::splat(0x80), lead);
    const __m256i two =
        _mm256_or_si256(_mm256_slli_epi16(_mm256_and_si256(lead, Avx2::splat(0x1F)), 6), lowSix(bytesFrom(1)));
    __m256i units = two;
    if constexpr (WITH_THREE)
    {
        const __m256i three = _mm256_or_si256(_mm256_slli_epi16(two, 6), lowSix(bytesFrom(2)));
        __m256i ofThree = _mm256_cmpgt_epi16(lead, Avx2::splat(0xDF));
        units = _mm256_blendv_epi8(units, three, ofThree);
        if constexpr (WITH_FOUR)
        {
            // A pair of surrogates comes from the lead byte and from the byte behind it. The same sum gives the upper
            // bits at the first place, and at the second one the lower ten.
            const __m256i ofFour = _mm256_cmpgt_epi16(lead, Avx2::splat(0xEF));
            const __m256i upper = _mm256_add_epi16(_mm256_srli_epi16(three, 4), Avx2::splat(0xD7C0));
            const __m256i lower =
                _mm256_or_si256(_mm256_and_si256(three, Avx2::splat(0x3FF)), Avx2::splat(0xDC00));
            const __m256i behind = _mm256_cmpgt_epi16(Avx2::splat(0xC0), lead);
            units = _mm256_blendv_epi8(_mm256_blendv_epi8(units, upper, ofFour), lower, behind);
            const __m256i inRange =
                Avx2::equal(_mm256_and_si256(upper, Avx2::splat(0xFC00)), Avx2::splat(0xD800));
            faults = _mm256_or_si256(faults, _mm256_andnot_si256(inRange, ofFour));
            ofThree = _mm256_andnot_si256(ofFour, ofThree);
        }
        // Below 0x800, or with the surrogates brought there.
        const __m256i lowest = _mm256_min_epu16(units, _mm256_xor_si256(units, Avx2::splat(0xD800)));
        const __m256i tooLow = Avx2::equal(_mm256_min_epu16(lowest, Avx2::splat(0x7FF)), lowest);
        faults = _mm256_or_si256(faults, _mm256_and_si256(tooLow, ofThree));
    }
    return _mm256_blendv_epi8(units, lead, ascii);
}

/// Writes the units that `kept` tells, without gaps. Returns their end.
inline Char* storeKept(__m128i units, unsigned kept, Char* to)
{
    store128(to, _mm_shuffle_epi8(units, load128(&UNIT_PACKINGS[kept])));
    return to + bitCount(kept);
}

/// Writes the units that come from `places` among 64. Returns their end; null when not all are valid.
template <bool WITH_THREE, bool WITH_FOUR>
Char* decodeBlock(const char* bytes, std::uint64_t places, Char* to)
{
    __m256i faults = _mm256_setzero_si256();
    for (int i = 0; i < 64; i += 16)
    {
        const __m256i units = decodePlaces<WITH_THREE, WITH_FOUR>(bytes + i, faults);
        to = storeKept(_mm256_castsi256_si128(units), static_cast<unsigned>(places >> i) & 0xFF, to);
        to = storeKept(_mm256_extracti128_si256(units, 1), static_cast<unsigned>(places >> i >> 8) & 0xFF, to);
    }
    return _mm256_testz_si256(faults, faults) != 0 ? to : nullptr;
}

inline Progress decodeUtf8Avx2(const char* bytes, std::size_t length, Char* units, std::size_t capacity)
{
    constexpr std::size_t BLOCK = 64;
    // The last place looks at two bytes more. Units never take more room than all places would.
    constexpr std::size_t BEHIND = 2;

    std::size_t read = 0;
    Char* to = units;
    // Where the next block continues a character, and where a pair ends in it that began before.
    std::uint64_t carried = 0;
    std::uint64_t carriedPair = 0;
    while (length - read >= BLOCK + BEHIND && capacity - static_cast<std::size_t>(to - units) >= BLOCK)
    {
        const char* const from = bytes + read;
        const ByteKinds kinds(from);
        if ((kinds.notAscii | carried) == 0)
        {
            Avx2::widen(from, to);
            Avx2::widen(from + BLOCK / 2, to + BLOCK / 2);
            read += BLOCK;
            to += BLOCK;
            continue;
        }
        const std::uint64_t expected = kinds.leads << 1 | kinds.threeOrMore << 2 | kinds.four << 3 | carried;
        if (expected != kinds.continuations || (kinds.four != 0 && !kinds.areLeads())) break;

        const std::uint64_t places = ~kinds.continuations | kinds.four << 1 | carriedPair;
        Char* const end = (kinds.four | carriedPair) != 0 ? decodeBlock<true, true>(from, places, to)
                          : kinds.threeOrMore != 0        ? decodeBlock<true, false>(from, places, to)
                                                          : decodeBlock<false, false>(from, places, to);
        if (end == nullptr) break;
        carried = kinds.leads >> 63 | kinds.threeOrMore >> 62 | kinds.four >> 61;
        carriedPair = kinds.four >> 63;
        read += BLOCK;
        to = end;
    }
    if (carried != 0)
    {
        // Back to the front of the character whose end was not looked at.
        std::size_t back = 1;
        while ((bytes[read - back] & 0xC0) == 0x80) ++back;
        read -= back;
        to -= static_cast<unsigned char>(bytes[read]) >= 0xF0 && back > 1 ? 2 : 1;
    }
    return {read, static_cast<std::size_t>(to - units)};
}

/// Stores the bytes of eight units of at most two each, of which `ones` tells those of one. Returns their number.
inline std::size_t storePairs(__m128i pairs, unsigned ones, char* bytes)
{
    const utf8_tables::Packing& packing = TWO_BYTE_PACKINGS[ones];
    store128(bytes, _mm_shuffle_epi8(pairs, load128(&packing.shuffle)));
    return packing.length;
}

/// Sixteen units below 0x800.
inline std::size_t encodePairs(__m256i units, char* bytes)
{
    const __m256i one = _mm256_cmpgt_epi16(Avx2::splat(0x80), units);
    const __m256i rest = _mm256_slli_epi16(_mm256_and_si256(units, Avx2::splat(0x3F)), 8);
    const __m256i two = _mm256_or_si256(_mm256_or_si256(_mm256_srli_epi16(units, 6), rest), Avx2::splat(0x80C0));
    const __m256i all = _mm256_blendv_epi8(two, units, one);
    const __m128i front = _mm256_castsi256_si128(all);
    const auto ones = static_cast<unsigned>(_mm_movemask_epi8(
        _mm_packs_epi16(_mm256_castsi256_si128(one), _mm256_extracti128_si256(one, 1))));
    const std::size_t length = storePairs(front, ones & 0xFF, bytes);
    return length + storePairs(_mm256_extracti128_si256(all, 1), ones >> 8, bytes + length);
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
        if (_mm256_testz_si256(wide, Avx2::splat(0xF800)) != 0)
        {
            written += encodePairs(wide, bytes + written);
            read += 16;
            continue;
        }
        const __m128i block = _mm256_castsi256_si128(wide);
        const __m128i top = _mm_and_si128(block, splat16(0xF800));
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
