#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "base/formats/bytes.h"

namespace Oxa_1_1::formats
{

/// Reads outside bytes one number after the other. Past the end everything reads as 0 and ok() is false.
class ByteReader
{
   public:
    explicit ByteReader(Bytes bytes, std::uint64_t offset = 0) : m_bytes(bytes) { moveTo(offset); }

    bool ok() const { return m_ok; }
    bool atEnd() const { return m_at >= m_bytes.size(); }
    std::size_t offset() const { return m_at; }
    std::size_t left() const { return m_bytes.size() - m_at; }

    void moveTo(std::uint64_t offset)
    {
        if (offset > m_bytes.size())
            fail();
        else
            m_at = static_cast<std::size_t>(offset);
    }

    void skip(std::uint64_t count)
    {
        if (count > left())
            fail();
        else
            m_at += static_cast<std::size_t>(count);
    }

    Bytes take(std::uint64_t count)
    {
        const std::size_t begin = m_at;
        skip(count);
        return m_ok ? m_bytes.subspan(begin, m_at - begin) : Bytes();
    }

    template <class T>
    T read()
    {
        T value{};
        if (left() < sizeof value)
        {
            fail();
            return value;
        }
        std::memcpy(&value, m_bytes.data() + m_at, sizeof value);
        m_at += sizeof value;
        return value;
    }

    /// A number of `size` bytes, at most eight.
    std::uint64_t number(unsigned size)
    {
        std::uint64_t value = 0;
        if (size > sizeof value || left() < size)
        {
            fail();
            return 0;
        }
        std::memcpy(&value, m_bytes.data() + m_at, size);
        m_at += size;
        return value;
    }

    /// Numbers of seven bits a byte. Bits beyond 64 are dropped.
    /// @{
    std::uint64_t unsignedLeb()
    {
        unsigned bits = 0;
        return leb(bits).value;
    }
    std::int64_t signedLeb()
    {
        unsigned bits = 0;
        const auto [value, last] = leb(bits);
        const bool isNegative = (last & 0x40) != 0 && bits < 64;
        return static_cast<std::int64_t>(isNegative ? value | ~std::uint64_t{0} << bits : value);
    }
    /// @}

    /// The characters before the next zero, which is skipped.
    std::string_view text()
    {
        const auto* const begin = reinterpret_cast<const char*>(m_bytes.data()) + m_at;
        const void* const end = left() == 0 ? nullptr : std::memchr(begin, 0, left());
        if (end == nullptr)
        {
            fail();
            return {};
        }
        const auto length = static_cast<std::size_t>(static_cast<const char*>(end) - begin);
        m_at += length + 1;
        return {begin, length};
    }

   private:
    struct Leb
    {
        std::uint64_t value;
        std::uint8_t last;
    };

    Leb leb(unsigned& bits)
    {
        std::uint64_t value = 0;
        for (;;)
        {
            const auto byte = read<std::uint8_t>();
            if (bits < 64) value |= static_cast<std::uint64_t>(byte & 0x7F) << bits;
            bits += 7;
            if ((byte & 0x80) == 0) return {value, byte};
        }
    }

    void fail()
    {
        m_at = m_bytes.size();
        m_ok = false;
    }

    Bytes m_bytes;
    std::size_t m_at = 0;
    bool m_ok = true;
};

}  // namespace Oxa_1_1::formats
