// The unwind tables of a module: the first byte chooses the address that is looked for, the rest is the index with all
// behind it.

#include "base/formats/unwind.h"
#include "fuzz/fuzz_input.h"

using namespace Oxa_1_1;

namespace
{

/// Reads as its own address everywhere.
class AnyStack : public formats::UnwindSource
{
   public:
    explicit AnyStack(const formats::UnwindTable& table) : m_table(table) {}

    bool read(std::uint64_t address, std::uint64_t& value) const override
    {
        value = address;
        return address % 16 == 0;
    }
    bool findTable(std::uint64_t, formats::UnwindTable& table) const override
    {
        table = m_table;
        return true;
    }

   private:
    const formats::UnwindTable& m_table;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::uint64_t BASE = 0x10000;
    if (size < 2) return 0;
    const std::string input = fuzz::bytes(data + 1, size - 1);
    formats::UnwindTable table;
    table.data = {reinterpret_cast<const std::uint8_t*>(input.data()), input.size()};
    table.index = table.data.data();
    table.shift = BASE - reinterpret_cast<std::uintptr_t>(table.index);
    table.begin = 0;
    table.end = ~std::uint64_t{0};
    if (!formats::checkUnwindTable(table)) return 0;

    formats::Registers registers{};
    registers[formats::RIP] = BASE + data[0];
    registers[formats::RSP] = BASE;
    int steps = 0;
    formats::walkFrames(AnyStack(table), registers, [&](auto...) { return ++steps < 50; });
    return 0;
}
