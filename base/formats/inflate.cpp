#include "base/formats/inflate.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

namespace Oxa_1_1::formats
{

namespace
{

constexpr unsigned LONGEST_CODE = 15;
constexpr std::size_t LITERAL_CODES = 288;
constexpr std::size_t DISTANCE_CODES = 30;

class BitReader
{
   public:
    explicit BitReader(Bytes bytes) : m_bytes(bytes) {}

    bool ok() const { return m_ok; }

    unsigned bits(unsigned count)
    {
        const unsigned value = peek(count);
        drop(count);
        return value;
    }

    /// The next bits, which stay; zeros behind the end.
    unsigned peek(unsigned count)
    {
        for (; m_count < count && m_at < m_bytes.size(); m_count += 8)
            m_held |= std::to_integer<std::uint64_t>(m_bytes[m_at++]) << m_count;
        return static_cast<unsigned>(m_held & ((std::uint64_t{1} << count) - 1));
    }

    void drop(unsigned count)
    {
        if (count > m_count) m_ok = false;
        m_held >>= count;
        m_count -= std::min(count, m_count);
    }

    /// The bytes of a stored block, which begin at a whole byte.
    Bytes stored()
    {
        // Whole bytes that were read in advance are given back.
        m_at -= m_count / 8;
        m_held = 0;
        m_count = 0;
        if (!holds(m_bytes, m_at, 4)) return fail();
        const std::size_t length = load16(m_bytes, m_at);
        const bool isConfirmed = (length ^ load16(m_bytes, m_at + 2)) == 0xFFFF;
        m_at += 4;
        if (!isConfirmed || !holds(m_bytes, m_at, length)) return fail();
        m_at += length;
        return m_bytes.subspan(m_at - length, length);
    }

   private:
    Bytes fail()
    {
        m_ok = false;
        return {};
    }

    Bytes m_bytes;
    std::size_t m_at = 0;
    std::uint64_t m_held = 0;
    unsigned m_count = 0;
    bool m_ok = true;
};

/// A prefix code, given by the length of each symbol's code.
class PrefixCode
{
   public:
    static constexpr unsigned NONE = ~0U;

    explicit PrefixCode(std::span<const std::uint8_t> lengths)
    {
        for (const std::uint8_t length : lengths) ++m_counts[length];
        m_counts[0] = 0;
        std::array<std::uint16_t, LONGEST_CODE + 2> begin{};
        for (std::size_t i = 1; i <= LONGEST_CODE; ++i)
            begin[i + 1] = static_cast<std::uint16_t>(begin[i] + m_counts[i]);
        for (std::size_t symbol = 0; symbol < lengths.size(); ++symbol)
            if (lengths[symbol] != 0) m_symbols[begin[lengths[symbol]]++] = static_cast<std::uint16_t>(symbol);
        for (unsigned bits = 0; bits < m_short.size(); ++bits) m_short[bits] = find(bits, SHORT_CODE);
    }

    /// The next symbol; NONE for bits that are no code.
    unsigned read(BitReader& reader) const
    {
        const unsigned bits = reader.peek(LONGEST_CODE);
        const Found& known = m_short[bits & (m_short.size() - 1)];
        const Found found = known.length != 0 ? known : find(bits, LONGEST_CODE);
        reader.drop(found.length);
        return found.length == 0 ? NONE : found.symbol;
    }

   private:
    struct Found
    {
        std::uint16_t symbol = 0;
        /// 0 when the bits are no code.
        std::uint8_t length = 0;
    };

    /// Most codes are short, and found at once.
    static constexpr unsigned SHORT_CODE = 9;

    Found find(unsigned bits, unsigned longest) const
    {
        unsigned code = 0;
        unsigned first = 0;
        unsigned index = 0;
        for (unsigned length = 1; length <= longest; ++length, bits >>= 1)
        {
            code |= bits & 1;
            const unsigned count = m_counts[length];
            if (code >= first && code < first + count)
                return {m_symbols[index + (code - first)], static_cast<std::uint8_t>(length)};
            index += count;
            first = (first + count) << 1;
            code <<= 1;
        }
        return {};
    }

    std::array<std::uint16_t, LONGEST_CODE + 1> m_counts{};
    std::array<std::uint16_t, LITERAL_CODES> m_symbols{};
    std::array<Found, std::size_t{1} << SHORT_CODE> m_short{};
};

struct Step
{
    std::uint16_t base;
    std::uint8_t extraBits;
};

constexpr std::array<Step, 29> LENGTHS{{{3, 0},   {4, 0},   {5, 0},   {6, 0},   {7, 0},  {8, 0},  {9, 0},  {10, 0},
                                        {11, 1},  {13, 1},  {15, 1},  {17, 1},  {19, 2}, {23, 2}, {27, 2}, {31, 2},
                                        {35, 3},  {43, 3},  {51, 3},  {59, 3},  {67, 4}, {83, 4}, {99, 4}, {115, 4},
                                        {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0}}};

constexpr std::array<Step, DISTANCE_CODES> DISTANCES{
    {{1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},     {9, 2},     {13, 2},
     {17, 3},    {25, 3},    {33, 4},    {49, 4},     {65, 5},     {97, 5},    {129, 6},   {193, 6},
     {257, 7},   {385, 7},   {513, 8},   {769, 8},    {1025, 9},   {1537, 9},  {2049, 10}, {3073, 10},
     {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13}}};

struct Output
{
    std::vector<std::byte> bytes;
    std::size_t limit;

    bool hasRoom(std::size_t count) const { return count <= limit - bytes.size(); }
};

bool readCodes(BitReader& reader, const PrefixCode& literals, const PrefixCode& distances, Output& output)
{
    constexpr unsigned END = 256;
    for (;;)
    {
        const unsigned symbol = literals.read(reader);
        if (symbol == END) return true;
        if (symbol < END)
        {
            if (!output.hasRoom(1)) return false;
            output.bytes.push_back(static_cast<std::byte>(symbol));
            continue;
        }
        if (symbol - END - 1 >= LENGTHS.size()) return false;
        const Step lengthStep = LENGTHS[symbol - END - 1];
        const std::size_t length = lengthStep.base + reader.bits(lengthStep.extraBits);
        const unsigned distanceSymbol = distances.read(reader);
        if (distanceSymbol >= DISTANCES.size()) return false;
        const Step distanceStep = DISTANCES[distanceSymbol];
        const std::size_t distance = distanceStep.base + reader.bits(distanceStep.extraBits);
        if (!reader.ok() || distance > output.bytes.size() || !output.hasRoom(length)) return false;
        // What is copied may be what was just written.
        for (std::size_t i = 0; i < length; ++i) output.bytes.push_back(output.bytes[output.bytes.size() - distance]);
    }
}

bool readFixedBlock(BitReader& reader, Output& output)
{
    std::array<std::uint8_t, LITERAL_CODES> literals{};
    for (std::size_t i = 0; i < literals.size(); ++i) literals[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
    std::array<std::uint8_t, DISTANCE_CODES> distances{};
    distances.fill(5);
    return readCodes(reader, PrefixCode(literals), PrefixCode(distances), output);
}

bool readDynamicBlock(BitReader& reader, Output& output)
{
    constexpr std::array<std::uint8_t, 19> ORDER{16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
    const std::size_t literalCount = reader.bits(5) + 257;
    const std::size_t distanceCount = reader.bits(5) + 1;
    const std::size_t codeCount = reader.bits(4) + 4;
    if (literalCount > LITERAL_CODES || distanceCount > DISTANCE_CODES) return false;
    std::array<std::uint8_t, ORDER.size()> codeLengths{};
    for (std::size_t i = 0; i < codeCount; ++i) codeLengths[ORDER[i]] = static_cast<std::uint8_t>(reader.bits(3));
    const PrefixCode lengthCode(codeLengths);

    std::array<std::uint8_t, LITERAL_CODES + DISTANCE_CODES> lengths{};
    const std::size_t count = literalCount + distanceCount;
    for (std::size_t i = 0; i < count;)
    {
        const unsigned symbol = lengthCode.read(reader);
        if (symbol > 18 || !reader.ok()) return false;
        if (symbol < 16)
        {
            lengths[i++] = static_cast<std::uint8_t>(symbol);
            continue;
        }
        if (symbol == 16 && i == 0) return false;
        const std::uint8_t value = symbol == 16 ? lengths[i - 1] : 0;
        const std::size_t times = symbol == 16   ? 3 + reader.bits(2)
                                  : symbol == 17 ? 3 + reader.bits(3)
                                                 : 11 + reader.bits(7);
        if (times > count - i) return false;
        std::fill_n(lengths.begin() + static_cast<std::ptrdiff_t>(i), times, value);
        i += times;
    }
    const std::span all(lengths);
    return readCodes(reader, PrefixCode(all.first(literalCount)), PrefixCode(all.subspan(literalCount, distanceCount)),
                     output);
}

bool readStoredBlock(BitReader& reader, Output& output)
{
    const Bytes bytes = reader.stored();
    if (!output.hasRoom(bytes.size())) return false;
    output.bytes.insert(output.bytes.end(), bytes.begin(), bytes.end());
    return true;
}

}  // namespace

std::vector<std::byte> inflate(Bytes packed, std::size_t size)
{
    // Data can not become more than about a thousand times as long.
    constexpr std::size_t LARGEST_GROWTH = 1040;
    if (packed.size() < 2 || size / LARGEST_GROWTH > packed.size()) return {};
    BitReader reader(packed.subspan(2));
    Output output{{}, size};
    output.bytes.reserve(size);
    for (bool isLast = false; !isLast;)
    {
        isLast = reader.bits(1) != 0;
        const unsigned kind = reader.bits(2);
        const bool isRead = kind == 0   ? readStoredBlock(reader, output)
                            : kind == 1 ? readFixedBlock(reader, output)
                            : kind == 2 ? readDynamicBlock(reader, output)
                                        : false;
        if (!isRead || !reader.ok()) return {};
    }
    if (output.bytes.size() != size) output.bytes.clear();
    return std::move(output.bytes);
}

}  // namespace Oxa_1_1::formats
