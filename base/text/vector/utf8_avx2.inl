// UTF-8 by table-driven shuffles. Included like scan.inl.
//
// Decoding looks at 64 bytes at once to learn where characters end, then takes six or four characters a step: the mask
// of ends gives a shuffle that puts each into a lane of its own, where plain arithmetic makes units of them. Whether the
// 64 bytes are well-formed is known before, by the method of Keiser and Lemire ("Validating UTF-8 in less than one
// instruction per byte", 2021); what is not is left to the caller. Encoding is the reverse of the steps.

#include "base/text/vector/avx2.inl"

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

/// Six lanes of 16 bits, each of one or two bytes.
inline void decodeSix(__m128i lanes, Char* units)
{
    const __m128i low = _mm_and_si128(lanes, splat16(0x7F));
    const __m128i high = _mm_srli_epi16(_mm_and_si128(lanes, splat16(0x1F00)), 2);
    store128(units, _mm_or_si128(low, high));
}

/// Four lanes of 32 bits, each of one to three bytes.
inline void decodeFour(__m128i lanes, Char* units)
{
    const __m128i low = _mm_and_si128(lanes, _mm_set1_epi32(0x7F));
    const __m128i middle = _mm_srli_epi32(_mm_and_si128(lanes, _mm_set1_epi32(0x3F00)), 2);
    const __m128i high = _mm_srli_epi32(_mm_and_si128(lanes, _mm_set1_epi32(0x0F0000)), 4);
    const __m128i result = _mm_or_si128(_mm_or_si128(low, middle), high);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(units), _mm_packus_epi32(result, result));
}

/// The same 16 bytes in both halves.
inline __m256i twice(__m128i table)
{
    return _mm256_broadcastsi128_si256(table);
}

/// The bytes that are `count` before each byte of `bytes`; zeros before the first.
template <int COUNT>
__m256i previous(__m256i bytes, __m256i before)
{
    return _mm256_alignr_epi8(bytes, _mm256_permute2x128_si256(before, bytes, 0x21), 16 - COUNT);
}

/// What is wrong with pairs of bytes, a bit for each kind of fault. A pair has a fault when the high half of its first
/// byte, the low half of it and the high half of the second byte all allow for it.
namespace fault
{

constexpr int TOO_SHORT = 1;        // A lead byte without its continuation.
constexpr int TOO_LONG = 2;         // A continuation behind ASCII.
constexpr int OVERLONG_3 = 4;       // E0 with less than A0.
constexpr int TOO_LARGE = 8;        // F4 with 90 and above, or F5 and above.
constexpr int SURROGATE = 16;       // ED with A0 and above.
constexpr int OVERLONG_2 = 32;      // C0, C1.
constexpr int TOO_LARGE_1000 = 64;  // F5 and above with less than 90.
constexpr int OVERLONG_4 = 64;      // F0 with less than 90.
constexpr int TWO_CONTINUATIONS = 128;
constexpr int ANY_LOW_HALF = TOO_SHORT | TOO_LONG | TWO_CONTINUATIONS;

inline __m128i table(int i0, int i1, int i2, int i3, int i4, int i5, int i6, int i7, int i8, int i9, int i10, int i11,
                     int i12, int i13, int i14, int i15)
{
    const auto byte = [](int value) { return static_cast<char>(value); };
    return _mm_setr_epi8(byte(i0), byte(i1), byte(i2), byte(i3), byte(i4), byte(i5), byte(i6), byte(i7), byte(i8),
                         byte(i9), byte(i10), byte(i11), byte(i12), byte(i13), byte(i14), byte(i15));
}

inline __m128i ofFirstHigh()
{
    constexpr int T = TOO_LONG;
    constexpr int C = TWO_CONTINUATIONS;
    return table(T, T, T, T, T, T, T, T, C, C, C, C, TOO_SHORT | OVERLONG_2, TOO_SHORT,
                 TOO_SHORT | OVERLONG_3 | SURROGATE, TOO_SHORT | TOO_LARGE | TOO_LARGE_1000 | OVERLONG_4);
}

inline __m128i ofFirstLow()
{
    constexpr int A = ANY_LOW_HALF;
    constexpr int L = A | TOO_LARGE | TOO_LARGE_1000;
    return table(A | OVERLONG_3 | OVERLONG_2 | OVERLONG_4, A | OVERLONG_2, A, A, A | TOO_LARGE, L, L, L, L, L, L, L, L,
                 L | SURROGATE, L, L);
}

inline __m128i ofSecondHigh()
{
    constexpr int S = TOO_SHORT;
    constexpr int C = TOO_LONG | OVERLONG_2 | TWO_CONTINUATIONS;
    return table(S, S, S, S, S, S, S, S, C | OVERLONG_3 | TOO_LARGE_1000 | OVERLONG_4, C | OVERLONG_3 | TOO_LARGE,
                 C | SURROGATE | TOO_LARGE, C | SURROGATE | TOO_LARGE, S, S, S, S);
}

}  // namespace fault

/// Bits where bytes do not go on well-formed from those before them. An end that is cut off is not yet a fault.
inline __m256i faultsOf(__m256i bytes, __m256i before)
{
    const __m256i low = _mm256_set1_epi8(0x0F);
    const __m256i first = previous<1>(bytes, before);
    const auto high = [low](__m256i value) { return _mm256_and_si256(_mm256_srli_epi16(value, 4), low); };
    const __m256i pairs = _mm256_and_si256(
        _mm256_and_si256(_mm256_shuffle_epi8(twice(fault::ofFirstHigh()), high(first)),
                         _mm256_shuffle_epi8(twice(fault::ofFirstLow()), _mm256_and_si256(first, low))),
        _mm256_shuffle_epi8(twice(fault::ofSecondHigh()), high(bytes)));

    // Two continuations in a row are right exactly where the third or fourth byte of a character is due: there the top
    // bit of one of these is set, which is that of the fault.
    const __m256i third = _mm256_subs_epu8(previous<2>(bytes, before), _mm256_set1_epi8(0xE0 - 0x80));
    const __m256i fourth = _mm256_subs_epu8(previous<3>(bytes, before), _mm256_set1_epi8(0xF0 - 0x80));
    const __m256i due = _mm256_and_si256(_mm256_or_si256(third, fourth), _mm256_set1_epi8(static_cast<char>(0x80)));
    return _mm256_xor_si256(due, pairs);
}

/// The bits of 64 bytes that begin with a character: those that are not ASCII, those behind which a character begins,
/// and whether all are well-formed but for a character that the end may cut off.
struct ByteMasks
{
    explicit ByteMasks(const char* bytes)
    {
        const __m256i first = Avx2::loadBytes(bytes);
        const __m256i second = Avx2::loadBytes(bytes + 32);
        notAscii = joined(first, second);
        const __m256i bound = _mm256_set1_epi8(static_cast<char>(0xC0));
        ends = ~joined(_mm256_cmpgt_epi8(bound, first), _mm256_cmpgt_epi8(bound, second)) >> 1;
        if (notAscii == 0) return;
        const __m256i faults = _mm256_or_si256(faultsOf(first, _mm256_setzero_si256()), faultsOf(second, first));
        wellFormed = _mm256_testz_si256(faults, faults) != 0;
    }

    static std::uint64_t joined(__m256i low, __m256i high)
    {
        return Avx2::mask(low) | static_cast<std::uint64_t>(Avx2::mask(high)) << 32;
    }

    std::uint64_t notAscii;
    std::uint64_t ends;
    bool wellFormed = true;
};

/// One character of `length` bytes, which is well-formed. Returns the number of units.
inline std::size_t decodeOne(const char* bytes, std::size_t length, Char* units)
{
    const auto byte = [bytes](int i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])); };
    switch (length)
    {
        case 1: units[0] = static_cast<Char>(byte(0)); return 1;
        case 2: units[0] = static_cast<Char>((byte(0) & 0x1F) << 6 | (byte(1) & 0x3F)); return 1;
        case 3:
            units[0] = static_cast<Char>((byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F));
            return 1;
        default: break;
    }
    const std::uint32_t c =
        (byte(0) & 7) << 18 | (byte(1) & 0x3F) << 12 | (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F);
    units[0] = static_cast<Char>(0xD7C0 + (c >> 10));
    units[1] = static_cast<Char>(0xDC00 + (c & 0x3FF));
    return 2;
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

        if (!masks.wellFormed) break;
        std::size_t position = 0;
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
                // A character of four bytes is too long for a step; others may stand before it.
                const auto ends = static_cast<unsigned>(masks.ends >> position);
                const std::size_t size = static_cast<std::size_t>(trailingZeros(ends)) + 1;
                written += decodeOne(from, size, to);
                position += size;
                continue;
            }
            const __m128i lanes = _mm_shuffle_epi8(load128(from), load128(&DECODE.shuffles[step.shuffle]));
            const bool six = step.shuffle < utf8_tables::FIRST_OF_FOUR;
            if (six)
                decodeSix(lanes, to);
            else
                decodeFour(lanes, to);
            position += step.length;
            written += six ? 6 : 4;
        }
        read += position;
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
