// UTF-8 both ways: bytes become well-formed text, and that text comes back as it is.

#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = fuzz::bytes(data, size);
    const String text{UTF8Interface(input.c_str())};
    const std::string encoded = text.stringUTF8();
    fuzz::require(String(UTF8Interface(encoded.c_str())).compareEquality(text));
    // Text without a replacement was well-formed, so not a byte of it may change.
    if (text.find(Char(0xFFFD)) < 0) fuzz::require(encoded == input.c_str());

    // Units of any kind give UTF-8 that reads back as what was written.
    const String units = fuzz::units(data, size);
    const std::string ofUnits = units.stringUTF8();
    if (units.find(Char(0)) < 0) fuzz::require(String(UTF8Interface(ofUnits.c_str())).stringUTF8() == ofUnits);
    return 0;
}
