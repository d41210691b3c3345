// Tokens of a narrow stream: reading ends, and takes at least a byte each time.

#include <sstream>

#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream stream(fuzz::bytes(data, size));
    std::size_t count = 0;
    String token;
    while (stream >> token)
    {
        fuzz::require(!token.isNil());
        fuzz::require(++count <= size);
    }
    fuzz::require(stream.eof());
    return 0;
}
