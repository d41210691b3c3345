#include "base/module/detail/memory_stream.h"

namespace Oxa_1_1::detail
{

MemoryBuffer::pos_type MemoryBuffer::seekoff(off_type offset, std::ios_base::seekdir from,
                                             std::ios_base::openmode which)
{
    const off_type size = egptr() - eback();
    off_type origin = 0;
    if (from == std::ios_base::cur) origin = gptr() - eback();
    if (from == std::ios_base::end) origin = size;
    if ((which & std::ios_base::in) == 0 || offset < -origin || offset > size - origin) return off_type{-1};
    setg(eback(), eback() + origin + offset, egptr());
    return origin + offset;
}

MemoryBuffer::pos_type MemoryBuffer::seekpos(pos_type position, std::ios_base::openmode which)
{
    return seekoff(position, std::ios_base::beg, which);
}

}  // namespace Oxa_1_1::detail
