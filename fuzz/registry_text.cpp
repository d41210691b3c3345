// Registry texts of any bytes: the name of a value up to its zero, then the file.

#include "base/formats/registry_text.h"

#include "fuzz/outside_bytes.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Text name = fuzz::takeUnits(data, size);
    const auto file = fuzz::outside(data, size);
    for (const TextView key : {OXA_TEXT("HKEY_CURRENT_USER\\Oxa"), OXA_TEXT("HKCU\\oxa\\")})
    {
        const auto value = formats::findRegistryValue(file, key, name);
        // Text of one byte may become one unit, and has a zero behind it.
        fuzz::require(!value || value->data.size() <= 2 * size + 2);
    }
    return 0;
}
