// UTF-8 by masks of 64 bytes. Included like scan.inl.
//
// Decoding takes the characters that begin in the first 61 bytes of each 64, so that all bytes of each are there, and
// the next block begins at a place that does not depend on what was read. The places where units come from are packed
// to the front; two shuffles fetch the bytes of each, and plain arithmetic makes units of them. Which bytes continue a
// character is known from the masks alone, and whether each character is in its shortest form and in range from its
// value. Encoding puts the bytes of each unit into a lane of its own and closes the gaps.
//
// Both take texts up to their last character; only what is ill-formed is left.

#include "base/text/vector/ascii_avx512.inl"

constexpr std::size_t WINDOW = VECTOR_BYTES - 3;

struct Numbers
{
    unsigned char bytes[VECTOR_BYTES];
};

/// `from` and the numbers behind it, `times` times each.
constexpr Numbers numbersFrom(std::size_t from, std::size_t times)
{
    Numbers numbers{};
    for (std::size_t i = 0; i < VECTOR_BYTES; ++i) numbers.bytes[i] = static_cast<unsigned char>(from + i / times);
    return numbers;
}

constexpr Numbers PLACES = numbersFrom(0, 1);
constexpr Numbers FRONT_TWICE = numbersFrom(0, 2);
constexpr Numbers BACK_TWICE = numbersFrom(VECTOR_UNITS, 2);

/// Units, and whether all are of characters in their shortest form and in range.
struct Decoded
{
    __m512i units;
    bool valid;
};

/// The units that come from 32 places in a block, each given twice.
template <bool WITH_THREE, bool WITH_FOUR>
Decoded decodePlaces(__m512i block, __m512i places)
{
    // The byte at the place above the one behind it: bytes in the order of their bits.
    const __m512i pair = _mm512_permutexvar_epi8(_mm512_add_epi8(places, splat512(0x0001)), block);
    const __m512i two = _mm512_maddubs_epi16(_mm512_and_si512(pair, splat512(0x1F3F)), splat512(0x4001));
    const __mmask32 ascii = _mm512_cmplt_epu16_mask(pair, splat512(0x8000));
    __m512i units = two;
    bool valid = true;
    if constexpr (WITH_THREE)
    {
        const __m512i third =
            _mm512_maskz_permutexvar_epi8(0x5555555555555555, _mm512_add_epi8(places, splat512(0x0002)), block);
        const __m512i three = _mm512_add_epi16(_mm512_slli_epi16(two, 6), _mm512_and_si512(third, splat512(0x3F)));
        const __mmask32 leads = _mm512_cmpge_epu16_mask(pair, splat512(0xE000));
        units = _mm512_mask_mov_epi16(units, leads, three);
        __mmask32 ofThree = leads;
        if constexpr (WITH_FOUR)
        {
            // A pair of surrogates comes from the lead byte and from the byte behind it. The same sum gives the upper
            // bits at the first place, and at the second one the lower ten.
            const __mmask32 ofFour = _mm512_cmpge_epu16_mask(pair, splat512(0xF000));
            const __mmask32 low = _mm512_cmplt_epu16_mask(pair, splat512(0xC000)) & ~ascii;
            units = _mm512_mask_add_epi16(units, ofFour, _mm512_srli_epi16(three, 4), splat512(0xD7C0));
            units = _mm512_mask_add_epi16(units, low, _mm512_and_si512(three, splat512(0x3FF)), splat512(0xDC00));
            valid =
                _mm512_mask_cmpneq_epu16_mask(ofFour, _mm512_and_si512(units, splat512(0xFC00)), splat512(0xD800)) == 0;
            ofThree &= ~ofFour;
        }
        // Below 0x800, or with the surrogates brought there.
        const __m512i lowest = _mm512_min_epu16(units, _mm512_xor_si512(units, splat512(0xD800)));
        valid &= _mm512_mask_cmplt_epu16_mask(ofThree, lowest, splat512(0x800)) == 0;
    }
    return {_mm512_mask_srli_epi16(units, ascii, pair, 8), valid};
}

/// Writes the units that come from `places`, `count` of them. False when they are not valid.
template <bool WITH_THREE, bool WITH_FOUR>
bool decodeBlock(__m512i block, std::uint64_t places, std::size_t count, Char* units, std::size_t capacity)
{
    const __m512i packed = _mm512_maskz_compress_epi8(places, _mm512_loadu_si512(&PLACES));
    const auto decode = [block, packed](const Numbers& numbers) {
        return decodePlaces<WITH_THREE, WITH_FOUR>(block,
                                                   _mm512_permutexvar_epi8(_mm512_loadu_si512(&numbers), packed));
    };
    const Decoded front = decode(FRONT_TWICE);
    const Decoded back = decode(BACK_TWICE);
    if (capacity >= 2 * VECTOR_UNITS)
    {
        _mm512_storeu_si512(units, front.units);
        _mm512_storeu_si512(units + VECTOR_UNITS, back.units);
    }
    else
    {
        const std::uint64_t mask = lowBits(count);
        _mm512_mask_storeu_epi16(units, static_cast<__mmask32>(mask), front.units);
        if (count > VECTOR_UNITS)
            _mm512_mask_storeu_epi16(units + VECTOR_UNITS, static_cast<__mmask32>(mask >> VECTOR_UNITS), back.units);
    }
    return front.valid && back.valid;
}

/// Texts of any kind.
OXA_KEPT_APART Progress decodeBlocks(const char* bytes, std::size_t length, Char* units, std::size_t capacity)
{
    std::size_t read = 0;
    std::size_t written = 0;
    // The bytes at the front of a block that belong to the character before it.
    std::uint64_t carried = 0;
    while (read < length)
    {
        const std::size_t left = length - read;
        const std::size_t room = capacity - written;
        const __m512i block = loadSome(bytes + read, left);
        const std::uint64_t notAscii = _mm512_movepi8_mask(block);
        if (notAscii == 0)
        {
            const std::size_t count = left < VECTOR_BYTES ? left : VECTOR_BYTES;
            if (room < count) break;
            if (count == VECTOR_BYTES)
                widenBlock(block, units + written);
            else
                widenSome(block, count, units + written);
            read += count;
            written += count;
            continue;
        }

        const std::size_t step = left < WINDOW ? left : WINDOW;
        const std::uint64_t window = lowBits(step);
        const std::uint64_t continuations = _mm512_cmplt_epi8_mask(block, _mm512_set1_epi8(static_cast<char>(0xC0)));
        const std::uint64_t leads = notAscii & ~continuations & window;
        const std::uint64_t threeOrMore =
            leads & _mm512_cmpge_epu8_mask(block, _mm512_set1_epi8(static_cast<char>(0xE0)));
        std::uint64_t expected = leads << 1 | threeOrMore << 2;

        // C0 and C1, which wrap around, and F0 and above.
        const __m512i fromTwo = _mm512_sub_epi8(block, _mm512_set1_epi8(static_cast<char>(0xC2)));
        const std::uint64_t four = leads & _mm512_cmpge_epu8_mask(fromTwo, _mm512_set1_epi8(0xF0 - 0xC2));
        if (four != 0)
        {
            if ((leads & _mm512_cmpge_epu8_mask(fromTwo, _mm512_set1_epi8(0xF5 - 0xC2))) != 0) break;
            expected |= four << 3;
        }
        const std::uint64_t missing = expected & ~continuations;
        const std::uint64_t unexpected = continuations & window & ~(expected | carried);
        if ((missing | unexpected) != 0) break;

        const std::uint64_t places = (window & ~continuations) | four << 1;
        const std::size_t count = bitCount64(places);
        if (room < count) break;
        Char* const to = units + written;
        const bool valid = four != 0          ? decodeBlock<true, true>(block, places, count, to, room)
                           : threeOrMore != 0 ? decodeBlock<true, false>(block, places, count, to, room)
                                              : decodeBlock<false, false>(block, places, count, to, room);
        if (!valid) break;
        carried = expected >> WINDOW;
        read += step;
        written += count;
    }
    // At the front of a character.
    return {read + bitCount64(read < length ? carried : 0), written};
}

inline Progress decodeUtf8Avx512(const char* bytes, std::size_t length, Char* units, std::size_t capacity)
{
    // Short ASCII needs none of the constants that the blocks do.
    if (length <= VECTOR_BYTES && length <= capacity)
    {
        const __m512i block = loadSome(bytes, length);
        if (_mm512_movepi8_mask(block) == 0)
        {
            widenSome(block, length, units);
            return {length, length};
        }
    }
    return decodeBlocks(bytes, length, units, capacity);
}

inline std::size_t countUnitsAvx512(const char* bytes, std::size_t length)
{
    const __m512i continuation = _mm512_set1_epi8(static_cast<char>(0xBF));
    const __m512i four = _mm512_set1_epi8(static_cast<char>(0xF0));
    std::size_t count = 0;
    for (std::size_t i = 0; i < length; i += VECTOR_BYTES)
    {
        const std::uint64_t counted = lowBits(length - i);
        const __m512i block = loadSome(bytes + i, length - i);
        count += bitCount64(counted & _mm512_cmpgt_epi8_mask(block, continuation));
        count += bitCount64(_mm512_cmpge_epu8_mask(block, four));
    }
    return count;
}

/// Where surrogates of 32 units begin a pair, and end one.
struct Pairs
{
    explicit Pairs(__m512i units)
    {
        const __m512i kind = _mm512_and_si512(units, splat512(0xFC00));
        high = _mm512_cmpeq_epi16_mask(kind, splat512(0xD800));
        low = _mm512_cmpeq_epi16_mask(kind, splat512(0xDC00));
    }

    __mmask32 high;
    __mmask32 low;
};

inline std::size_t countBytesAvx512(const Char* units, std::size_t length)
{
    std::size_t count = length;
    std::uint64_t highBefore = 0;
    for (std::size_t i = 0; i < length; i += VECTOR_UNITS)
    {
        const __m512i block = loadSome(units + i, length - i);
        count += bitCount64(_mm512_test_epi16_mask(block, splat512(0xFF80)));
        count += bitCount64(_mm512_cmpge_epu16_mask(block, splat512(0x800)));
        const Pairs pairs(block);
        // Four bytes for two units, which were counted as three each.
        const std::uint64_t behindHigh = std::uint64_t(pairs.high) << 1 | highBefore;
        count -= 2 * bitCount64(behindHigh & pairs.low);
        highBefore = behindHigh >> VECTOR_UNITS;
    }
    return count;
}

/// Stores the bytes of `lanes` that `kept` tells, without gaps. Returns their number.
inline std::size_t storeKept(__m512i lanes, std::uint64_t kept, char* bytes, std::size_t room)
{
    const __m512i packed = _mm512_maskz_compress_epi8(kept, lanes);
    const std::size_t count = bitCount64(kept);
    if (room >= VECTOR_BYTES)
        _mm512_storeu_si512(bytes, packed);
    else
        _mm512_mask_storeu_epi8(bytes, lowBits(count), packed);
    return count;
}

/// What the units of a block become, a bit for each unit.
struct UnitKinds
{
    std::uint32_t present;
    std::uint32_t beyondAscii;
    std::uint32_t threeBytes;
    std::uint32_t high;
    std::uint32_t low;
};

/// 16 units, which lie in lanes of 32 bits. `from` is the number of the first one.
template <bool WITH_PAIRS>
std::size_t encodeLanes(__m512i lanes, const UnitKinds& kinds, unsigned from, char* bytes, std::size_t room)
{
    const auto ofLanes = [from](std::uint32_t mask) { return static_cast<__mmask16>(mask >> from); };
    // The upper four bits, the middle and the last six of each, each in a byte; the bits of leads and continuations.
    const __m512i fields =
        _mm512_multishift_epi64_epi8(_mm512_set1_epi64(static_cast<long long>(0x2020262C0000060C)), lanes);
    __m512i all = _mm512_ternarylogic_epi32(fields, _mm512_set1_epi32(0x003F3F0F), _mm512_set1_epi32(0x008080E0), 0xEA);
    const std::uint32_t twoBytes = kinds.beyondAscii & ~(kinds.threeBytes | kinds.high | kinds.low);
    all = _mm512_mask_or_epi32(all, ofLanes(twoBytes), all, _mm512_set1_epi32(0x4000));
    if constexpr (WITH_PAIRS) all = _mm512_mask_or_epi32(all, ofLanes(kinds.high), all, _mm512_set1_epi32(0x7000));
    all = _mm512_mask_slli_epi32(all, ofLanes(~kinds.beyondAscii), lanes, 16);

    const auto spread = [ofLanes](std::uint32_t mask, std::uint64_t places)
    { return _pdep_u64(ofLanes(mask), places); };
    const std::uint64_t kept = spread(kinds.threeBytes, 0x1111111111111111) |
                               spread(kinds.beyondAscii, 0x2222222222222222) |
                               spread(kinds.present, 0x4444444444444444);
    return storeKept(all, kept, bytes, room);
}

template <bool WITH_PAIRS>
std::size_t encodeWide(__m512i block, const UnitKinds& kinds, char* bytes, std::size_t room)
{
    const std::size_t front =
        encodeLanes<WITH_PAIRS>(_mm512_cvtepu16_epi32(_mm512_castsi512_si256(block)), kinds, 0, bytes, room);
    return front + encodeLanes<WITH_PAIRS>(_mm512_cvtepu16_epi32(_mm512_extracti64x4_epi64(block, 1)), kinds, 16,
                                           bytes + front, room - front);
}

/// Gives each half of a pair twelve bits, which become two bytes.
inline __m512i spreadPairs(__m512i block, const UnitKinds& kinds)
{
    alignas(64) static constexpr unsigned short BEFORE[VECTOR_UNITS] = {0,  0,  1,  2,  3,  4,  5,  6,  7,  8,  9,
                                                                        10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20,
                                                                        21, 22, 23, 24, 25, 26, 27, 28, 29, 30};
    const __m512i bits = _mm512_and_si512(block, splat512(0x3FF));
    const __m512i high = _mm512_srli_epi16(_mm512_add_epi16(bits, splat512(0x40)), 2);
    const __m512i before = _mm512_permutexvar_epi16(_mm512_loadu_si512(BEFORE), bits);
    const __m512i low = _mm512_or_si512(bits, _mm512_slli_epi16(_mm512_and_si512(before, splat512(3)), 10));
    return _mm512_mask_mov_epi16(_mm512_mask_mov_epi16(block, kinds.high, high), kinds.low, low);
}

/// Texts of any kind.
OXA_KEPT_APART Progress encodeBlocks(const Char* units, std::size_t length, char* bytes, std::size_t capacity)
{
    std::size_t read = 0;
    std::size_t written = 0;
    while (read < length)
    {
        const std::size_t left = length - read;
        const std::size_t room = capacity - written;
        std::size_t count = left < VECTOR_UNITS ? left : VECTOR_UNITS;
        const __m512i block = loadSome(units + read, left);
        char* const to = bytes + written;
        UnitKinds kinds{lowUnits(count), _mm512_test_epi16_mask(block, splat512(0xFF80)), 0, 0, 0};
        if (kinds.beyondAscii == 0)
        {
            if (room < count) break;
            const __m256i narrow = _mm512_cvtepi16_epi8(block);
            if (count == VECTOR_UNITS)
                _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), narrow);
            else
                _mm256_mask_storeu_epi8(to, kinds.present, narrow);
            read += count;
            written += count;
            continue;
        }

        kinds.threeBytes = _mm512_cmpge_epu16_mask(block, splat512(0x800));
        if (kinds.threeBytes == 0)
        {
            const std::size_t size = count + bitCount64(kinds.beyondAscii);
            if (room < size) break;
            const __m512i last = _mm512_and_si512(_mm512_slli_epi16(block, 8), splat512(0x3F00));
            const __m512i pair = _mm512_or_si512(_mm512_or_si512(last, _mm512_srli_epi16(block, 6)), splat512(0x80C0));
            const std::uint64_t kept =
                _pdep_u64(kinds.beyondAscii, 0xAAAAAAAAAAAAAAAA) | _pdep_u64(kinds.present, 0x5555555555555555);
            storeKept(_mm512_mask_mov_epi16(block, kinds.beyondAscii, pair), kept, to, room);
            read += count;
            written += size;
            continue;
        }

        const Pairs pairs(block);
        kinds.high = pairs.high;
        kinds.low = pairs.low;
        const bool withPairs = (kinds.high | kinds.low) != 0;
        if (withPairs)
        {
            // The other half of the last one is in the next block.
            if ((kinds.high >> (count - 1) & 1) != 0 && left > count)
            {
                --count;
                kinds.present = lowUnits(count);
                kinds.high &= kinds.present;
                kinds.beyondAscii &= kinds.present;
            }
            if ((kinds.high >> (count - 1) & 1) != 0 || kinds.low != kinds.high << 1) break;
            kinds.threeBytes &= kinds.present & ~(kinds.high | kinds.low);
        }
        const std::size_t size = count + bitCount64(kinds.beyondAscii) + bitCount64(kinds.threeBytes);
        if (room < size) break;
        if (withPairs)
            encodeWide<true>(spreadPairs(block, kinds), kinds, to, room);
        else
            encodeWide<false>(block, kinds, to, room);
        read += count;
        written += size;
    }
    return {read, written};
}

inline Progress encodeUtf8Avx512(const Char* units, std::size_t length, char* bytes, std::size_t capacity)
{
    if (length <= VECTOR_UNITS && length <= capacity)
    {
        const __m512i block = loadSome(units, length);
        if (_mm512_test_epi16_mask(block, splat512(0xFF80)) == 0)
        {
            _mm256_mask_storeu_epi8(bytes, lowUnits(length), _mm512_cvtepi16_epi8(block));
            return {length, length};
        }
    }
    return encodeBlocks(units, length, bytes, capacity);
}
