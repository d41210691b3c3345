// Numbers as text: what is appended reads back as nearly the same number, by the digits that the rule keeps.

#include <cmath>
#include <cstring>

#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    double value = 0;
    if (size < sizeof value) return 0;
    std::memcpy(&value, data, sizeof value);

    String text;
    text << value;
    fuzz::require(text.length() > 0 && text.length() <= 320);
    double back = 0;
    text >> back;
    fuzz::require(text.isEmpty());
    if (std::isnan(value))
        fuzz::require(std::isnan(back));
    else if (std::isinf(value))
        fuzz::require(back == value);
    else
        fuzz::require(std::fabs(back - value) <= std::fabs(value) * 1e-7);
    return 0;
}
