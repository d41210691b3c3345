// A module's file: its sections, its build and its functions.

#include "base/formats/elf_file.h"
#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = fuzz::bytes(data, size);
    const formats::ElfFile elf({reinterpret_cast<const std::uint8_t*>(input.data()), input.size()});
    std::uint64_t begin = 0;
    std::uint64_t offset = 0;
    if (elf.findUnwindIndex(offset, begin)) fuzz::require(offset < size);
    elf.hasSection(".debug_info");
    fuzz::require(elf.buildId().size() <= 128);
    const std::uint64_t address = elf.firstAddress() + 0x1000;
    fuzz::require(elf.functionAt(address, begin).size() <= size);
    return 0;
}
