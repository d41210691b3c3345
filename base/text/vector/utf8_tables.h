#pragma once

#include <array>
#include <cstdint>

/// Shuffles that bring characters of UTF-8 into lanes of their own, and close the gaps between the bytes of lanes.
namespace Oxa_1_1::text::utf8_tables
{

using Shuffle = std::array<std::uint8_t, 16>;

/// Leaves a lane's byte zero.
inline constexpr std::uint8_t NOTHING = 0x80;

/// What to do with 12 bytes, by the bits that mark where characters end.
struct Step
{
    /// Into DecodeTables::shuffles; of the first kind below FIRST_OF_FOUR.
    std::uint8_t shuffle;
    /// The bytes of the characters that it takes; 0 when there are longer ones among them.
    std::uint8_t length;
};

/// Six characters of up to two bytes go into lanes of 16 bits, four of up to three bytes into lanes of 32 bits.
inline constexpr int FIRST_OF_FOUR = 64;

struct DecodeTables
{
    std::array<Step, 4096> steps{};
    std::array<Shuffle, 64 + 81> shuffles{};
};

/// The lengths of the characters in a mask of their ends, at most `count`. Characters that do not end have length 13.
constexpr std::array<int, 6> lengthsOf(unsigned ends, int count)
{
    std::array<int, 6> lengths{};
    int position = 0;
    for (int i = 0; i < count; ++i)
    {
        int length = 1;
        while (position + length <= 12 && (ends >> (position + length - 1) & 1) == 0) ++length;
        lengths[static_cast<std::size_t>(i)] = position + length <= 12 ? length : 13;
        position += lengths[static_cast<std::size_t>(i)];
    }
    return lengths;
}

/// Puts the bytes of each character, the last one first, into lanes of `width` bytes.
constexpr Shuffle laneShuffle(const std::array<int, 6>& lengths, int count, int width)
{
    Shuffle shuffle{};
    for (auto& byte : shuffle) byte = NOTHING;
    int position = 0;
    for (int i = 0; i < count; ++i)
    {
        const int length = lengths[static_cast<std::size_t>(i)];
        for (int k = 0; k < length; ++k)
        {
            const int target = i * width + k;
            shuffle[static_cast<std::size_t>(target)] = static_cast<std::uint8_t>(position + length - 1 - k);
        }
        position += length;
    }
    return shuffle;
}

constexpr bool fits(const std::array<int, 6>& lengths, int count, int longest)
{
    for (int i = 0; i < count; ++i)
        if (lengths[static_cast<std::size_t>(i)] > longest) return false;
    return true;
}

/// The number of a combination of lengths, and how many bytes they are together.
constexpr Step combine(const std::array<int, 6>& lengths, int count, int longest)
{
    int number = 0;
    int total = 0;
    for (int i = 0; i < count; ++i)
    {
        number = number * longest + lengths[static_cast<std::size_t>(i)] - 1;
        total += lengths[static_cast<std::size_t>(i)];
    }
    return {static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(total)};
}

constexpr DecodeTables makeDecodeTables()
{
    DecodeTables tables;
    for (unsigned ends = 0; ends < tables.steps.size(); ++ends)
    {
        Step step{};
        if (const auto six = lengthsOf(ends, 6); fits(six, 6, 2))
        {
            step = combine(six, 6, 2);
            tables.shuffles[step.shuffle] = laneShuffle(six, 6, 2);
        }
        else if (const auto four = lengthsOf(ends, 4); fits(four, 4, 3))
        {
            step = combine(four, 4, 3);
            step.shuffle = static_cast<std::uint8_t>(step.shuffle + FIRST_OF_FOUR);
            tables.shuffles[step.shuffle] = laneShuffle(four, 4, 4);
        }
        tables.steps[ends] = step;
    }
    return tables;
}

/// A shuffle that packs lanes, and the bytes that are left.
struct Packing
{
    Shuffle shuffle;
    std::uint8_t length;
};

/// Packs `count` lanes of `width` bytes of which the first lengthOf(lane) count.
template <class LengthOf>
constexpr Packing makePacking(int count, int width, LengthOf lengthOf)
{
    Packing packing{};
    for (auto& byte : packing.shuffle) byte = NOTHING;
    for (int lane = 0; lane < count; ++lane)
        for (int k = 0; k < lengthOf(lane); ++k)
            packing.shuffle[packing.length++] = static_cast<std::uint8_t>(lane * width + k);
    return packing;
}

/// Eight lanes of 16 bits; a set bit marks a lane of one byte, the others have two.
constexpr std::array<Packing, 256> makeTwoBytePackings()
{
    std::array<Packing, 256> packings{};
    for (unsigned ones = 0; ones < packings.size(); ++ones)
        packings[ones] = makePacking(8, 2, [ones](int lane) { return (ones >> lane & 1) != 0 ? 1 : 2; });
    return packings;
}

/// Four lanes of 32 bits; the low four bits mark lanes of at most two bytes, the high ones lanes of one. Others have
/// three.
constexpr std::array<Packing, 256> makeThreeBytePackings()
{
    std::array<Packing, 256> packings{};
    for (unsigned marks = 0; marks < packings.size(); ++marks)
    {
        const auto lengthOf = [marks](int lane)
        {
            if ((marks >> (lane + 4) & 1) != 0) return 1;
            return (marks >> lane & 1) != 0 ? 2 : 3;
        };
        packings[marks] = makePacking(4, 4, lengthOf);
    }
    return packings;
}

}  // namespace Oxa_1_1::text::utf8_tables
