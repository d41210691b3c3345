#pragma once

#include <cstddef>
#include <istream>
#include <span>
#include <streambuf>

namespace Oxa_1_1::detail
{

/// Reads bytes where they lie.
class MemoryBuffer : public std::streambuf
{
   public:
    explicit MemoryBuffer(std::span<const std::byte> bytes)
    {
        // The get area is declared writable, yet nothing is ever put back into it but what stands there.
        auto* const begin = const_cast<char*>(reinterpret_cast<const char*>(bytes.data()));
        setg(begin, begin, begin + bytes.size());
    }

   protected:
    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) override;
    pos_type seekpos(pos_type position, std::ios_base::openmode which) override;
};

/// A stream that owns such a buffer.
class MemoryStream : private MemoryBuffer, public std::istream
{
   public:
    explicit MemoryStream(std::span<const std::byte> bytes)
        : MemoryBuffer(bytes), std::istream(static_cast<MemoryBuffer*>(this))
    {
    }
};

}  // namespace Oxa_1_1::detail
