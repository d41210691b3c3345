#pragma once

#include <cstdint>
#include <string>

namespace Oxa_1_1::platform
{

/// Where in the source the code at an address comes from. Empty and 0 where the modules do not tell.
struct SourcePlace
{
    /// As the linker knows it.
    std::string function;
    std::uint64_t functionOffset = 0;
    std::string file;
    std::uint32_t line = 0;
};

/// Of code of this process, by the symbol reader of the compiler's run-time libraries; nothing when the library was
/// built without it.
SourcePlace findSource(std::uint64_t address);

}  // namespace Oxa_1_1::platform
