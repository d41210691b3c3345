#pragma once

#include <array>
#include <cstdint>

/// Shuffles that close the gaps between lanes, and between the bytes of lanes.
namespace Oxa_1_1::text::utf8_tables
{

using Shuffle = std::array<std::uint8_t, 16>;

/// Leaves a lane's byte zero.
inline constexpr std::uint8_t NOTHING = 0x80;

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

/// Eight lanes of 16 bits, of which a set bit keeps each.
constexpr std::array<Shuffle, 256> makeUnitPackings()
{
    std::array<Shuffle, 256> packings{};
    for (unsigned kept = 0; kept < packings.size(); ++kept)
        packings[kept] = makePacking(8, 2, [kept](int lane) { return (kept >> lane & 1) != 0 ? 2 : 0; }).shuffle;
    return packings;
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
