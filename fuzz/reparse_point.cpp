// Marks of links of any bytes; what comes out of them makes a junction that leads to the same place.

#include "base/formats/reparse_point.h"

#include "fuzz/outside_bytes.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto target = formats::readReparsePoint(fuzz::outside(data, size));
    if (!target) return 0;
    fuzz::require(!target->empty());
    const auto junction = formats::makeJunction(*target);
    fuzz::require(!junction || formats::readReparsePoint(*junction) == target);
    return 0;
}
