// Version blocks of any bytes: a path up to its zero, then the block.

#include "base/formats/version_block.h"

#include "fuzz/outside_bytes.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Text query = fuzz::takeUnits(data, size);
    const auto block = fuzz::outside(data, size);
    for (const TextView path :
         {TextView(query), TextView(OXA_TEXT("\\")), TextView(OXA_TEXT("\\VarFileInfo\\Translation"))})
    {
        const auto value = formats::queryVersionValue(block, path);
        fuzz::require(!value || fuzz::isPartOf(*value, block));
    }
    return 0;
}
