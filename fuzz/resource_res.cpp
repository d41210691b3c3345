// Compiled resource scripts of any bytes.

#include "fuzz/resource_checks.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto bytes = fuzz::outside(data, size);
    fuzz::checkResources(formats::ResourceIndex::fromRes(bytes), bytes);
    return 0;
}
