#pragma once

#include <cstddef>
#include <string>

namespace Oxa_1_1::text
{

/// Gives `text` the size and lets fill(pointer) write all of it, without zeros written first where the standard library
/// can do so.
template <class C, class Fill>
void resizeAndFill(std::basic_string<C>& text, std::size_t size, const Fill& fill)
{
#ifdef __cpp_lib_string_resize_and_overwrite
    // The size that the callback is told may be rounded up, so it keeps its own.
    text.resize_and_overwrite(size,
                              [&fill, size](C* data, std::size_t)
                              {
                                  fill(data);
                                  return size;
                              });
#else
    text.resize(size);
    fill(text.data());
#endif
}

/// Appends what write(pointer) writes, which is at most MOST units, and whose number it returns: right into the text
/// where there is room, because a copy would have to wait for what was just written.
template <std::size_t MOST, class C, class Write>
void appendWritten(std::basic_string<C>& text, const Write& write)
{
#ifdef __cpp_lib_string_resize_and_overwrite
    const std::size_t size = text.size();
    if (text.capacity() - size >= MOST)
    {
        text.resize_and_overwrite(size + MOST,
                                  [&write, size](C* data, std::size_t) { return size + write(data + size); });
        return;
    }
#endif
    C buffer[MOST];
    text.append(buffer, write(buffer));
}

}  // namespace Oxa_1_1::text
