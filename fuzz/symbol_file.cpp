// A module's file with its names and its debug information, of either system.

#include "base/formats/symbol_file.h"
#include "fuzz/outside_bytes.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2) return 0;
    formats::SymbolFile file(fuzz::outside(data + 2, size - 2), {});
    std::vector<formats::SourceFrame> frames;
    std::uint64_t functionOffset = 0;
    const std::uint64_t begin = std::uint64_t{data[0]} * 64;
    // The samples are small.
    for (std::uint64_t offset = begin; offset < begin + 64 * (data[1] % 8 + 1U); offset += 16)
    {
        frames.clear();
        const bool isKnown = file.find(offset, frames, functionOffset);
        fuzz::require(isKnown == !frames.empty());
    }
    return 0;
}
