#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "base/char.h"
#include "base/text/resize_and_fill.h"

/// Access to outside bytes, which hold little-endian numbers at any address.
namespace Oxa_1_1::formats
{

using Bytes = std::span<const std::byte>;

// Texts are copied as they lie.
static_assert(std::endian::native == std::endian::little);

constexpr bool holds(Bytes bytes, std::size_t offset, std::size_t length)
{
    return offset <= bytes.size() && length <= bytes.size() - offset;
}

/// A number of two bytes. The caller knows that they are there.
inline std::uint16_t load16(Bytes bytes, std::size_t offset)
{
    std::uint16_t value = 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

/// A number of four bytes. The caller knows that they are there.
inline std::uint32_t load32(Bytes bytes, std::size_t offset)
{
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

constexpr std::size_t alignUp4(std::size_t offset) { return (offset + 3) & ~std::size_t{3}; }

/// A copy of the units that `bytes` hold; half a unit at the end is dropped.
inline Text copyText(Bytes bytes)
{
    const std::size_t length = bytes.size() / sizeof(Char);
    Text text;
    if (length == 0) return text;
    text::resizeAndFill(text, length,
                        [bytes](Char* units) { std::memcpy(units, bytes.data(), bytes.size() & ~std::size_t{1}); });
    return text;
}

/// How many bytes the units before the first zero take, or all whole units when there is none.
inline std::size_t textBytes(Bytes bytes)
{
    std::size_t length = 0;
    while (holds(bytes, length, sizeof(Char)) && load16(bytes, length) != 0) length += sizeof(Char);
    return length;
}

}  // namespace Oxa_1_1::formats
