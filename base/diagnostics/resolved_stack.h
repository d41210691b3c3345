#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/export.h"

namespace Oxa_1_1
{

/// A function of a captured stack. Texts are in the system's narrow encoding, empty where nothing is known, and live as
/// long as the ResolvedStack that holds them.
struct ResolvedFrame
{
    /// The captured address.
    const void* address;
    /// The function as the source names it, with its parameters, and as the linker knows it.
    /// @{
    std::string_view function;
    std::string_view signature;
    std::string_view linkerName;
    /// @}
    /// Where the function stands at that moment: the source file, and the line, counted from 1; 0 for none.
    /// @{
    std::string_view file;
    std::uint32_t line;
    /// @}
    /// The compiler made the function a part of the one that called it, which is the next frame.
    bool isInlined;
    /// The module's name, its file, where it begins in memory, and its kind of symbols ("DWARF", "COFF").
    /// @{
    std::string_view module;
    std::string_view moduleFile;
    std::uint64_t moduleBase;
    std::string_view symbolType;
    /// @}
};

/// The functions of a captured stack, innermost first.
class OXA_API ResolvedStack
{
   public:
    /// As of the standard containers.
    /// @{
    using const_iterator = std::vector<ResolvedFrame>::const_iterator;
    const_iterator begin() const noexcept { return m_frames.begin(); }
    const_iterator end() const noexcept { return m_frames.end(); }
    std::size_t size() const noexcept { return m_frames.size(); }
    bool empty() const noexcept { return m_frames.empty(); }
    const ResolvedFrame& operator[](std::size_t index) const noexcept { return m_frames[index]; }
    /// @}

    /// A line for each function from the frame `first` on: "  function (file:line)" and a line feed, with the module,
    /// or at least the address, for what is not known.
    std::string text(std::size_t first = 0) const;

   private:
    friend OXA_API ResolvedStack resolveFrames(std::span<void* const> addresses);

    std::vector<ResolvedFrame> m_frames;
    std::shared_ptr<const void> m_texts;
};

/// Names addresses that StackWalker::captureFrames or captureAllThreads stored, on any thread and at any later time, as
/// long as their modules are loaded: one frame for each address, before it those of the functions that were inlined
/// there. Each is taken for the address that a call returns to. Not to be called from a signal handler.
OXA_API ResolvedStack resolveFrames(std::span<void* const> addresses);

/// Where a thread of this process was.
struct ThreadStack
{
    /// The system's number of the thread, and its name, where it has one.
    /// @{
    std::uint32_t thread;
    std::string name;
    /// @}
    /// For resolveFrames, innermost first.
    std::vector<void*> addresses;
    /// 0, or the system's error code why the thread could not be stopped; there are no addresses then.
    std::uint32_t error;
};

/// The stacks of all threads of the process, the calling one first, each with at most 256 frames. Every other thread is
/// stopped in its turn while its frames are collected.
OXA_API std::vector<ThreadStack> captureAllThreads();

}  // namespace Oxa_1_1
