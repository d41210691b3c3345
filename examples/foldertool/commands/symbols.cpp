// Lists the symbols that a resource header defines.

#include <algorithm>
#include <sstream>

#include "base/module/symbol_table.h"
#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/operands.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

/// Line after line, so that it can be told which ones are not accepted.
bool parseHeader(SymbolTable& table, const std::filesystem::path& operand)
{
    constexpr std::size_t MEGABYTES = 100;
    bool isAccepted = true;
    std::size_t number = 0;
    std::istringstream header(contentOf(operand, MEGABYTES));
    for (std::string line; std::getline(header, line);)
    {
        ++number;
        std::istringstream definition(line);
        if (table.parseHeaderFile(definition)) continue;
        complain(text(IDS_BAD_SYMBOL, {nameText(operand), std::to_string(number)}));
        isAccepted = false;
    }
    return isAccepted;
}

}  // namespace

bool commands::symbols(const CommandLine& line)
{
    constexpr std::size_t VALUE_COLUMNS = 11;
    SymbolTable table;
    const bool isAccepted = parseHeader(table, line.operands[0]);
    for (const String& name : table.names())
        print(right(std::to_string(table[name]), VALUE_COLUMNS) + "  " + name.stringUTF8());
    print(counted(IDS_ONE_SYMBOL, table.size()));
    return isAccepted;
}

}  // namespace foldertool
