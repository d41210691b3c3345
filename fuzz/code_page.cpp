// Narrow text of any code page: the first two bytes choose it.

#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

namespace
{

class Tagged : public CodePageInterface
{
   public:
    Tagged(const char* data, std::uint32_t codePage) : CodePageInterface(data, codePage) {}
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2) return 0;
    const auto codePage = static_cast<std::uint32_t>(data[0] | data[1] << 8);
    const std::string input = fuzz::bytes(data + 2, size - 2);
    fuzz::require(!String(Tagged(input.c_str(), codePage)).isNil());

    const String ansi(input);
    fuzz::require(ansi.length() == static_cast<int>(input.size()));
    fuzz::require(ansi.stringAnsi() == input);
    const String units = fuzz::units(data, size);
    fuzz::require(units.stringAnsi().size() == units.view().size());
    return 0;
}
