#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/platform/stack/call_stack.h"

namespace Oxa_1_1::platform::detail
{

/// Where frames go that lie outside of a given one.
class FrameList
{
   public:
    FrameList(std::span<StackFrame> frames, const void* innermost)
        : m_frames(frames), m_innermost(reinterpret_cast<std::uintptr_t>(innermost))
    {
    }

    bool add(std::uint64_t address, std::uint64_t stackPointer, bool isAfterCall)
    {
        if (m_count > 0) m_frames[m_count - 1].returnAddress = address;
        if (m_count == m_frames.size()) return false;
        // Once outside, all further frames count: a signal may have come in on a stack that lies elsewhere.
        if (m_count == 0 && stackPointer <= m_innermost) return true;
        m_frames[m_count++] = {address, 0, isAfterCall};
        return true;
    }

    void clear() { m_count = 0; }
    std::size_t count() const { return m_count; }

   private:
    std::span<StackFrame> m_frames;
    std::uint64_t m_innermost;
    std::size_t m_count = 0;
};

}  // namespace Oxa_1_1::platform::detail
