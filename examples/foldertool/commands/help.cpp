// Tells how the program is used.

#include "examples/foldertool/commands.h"
#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/module_report.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

namespace
{

std::string synopsis(const Command& command)
{
    return command.maxOperands == 0 ? command.name : command.name + (' ' + text(command.help + 2));
}

}  // namespace

bool commands::help(const CommandLine& line)
{
    if (line.operands.empty())
        printHelp();
    else
        printHelp(findCommand(system::bytesOf(line.operands[0])));
    return true;
}

void printHelp()
{
    constexpr std::size_t SYNOPSIS_COLUMNS = 22;
    print(text(IDS_USAGE, {text(IDS_PROGRAM), ownVersion()}));
    print("");
    print(text(IDS_COMMANDS));
    for (const Command& command : allCommands())
        print("  " + left(synopsis(command), SYNOPSIS_COLUMNS) + text(command.help));
    print("");
    print(text(IDS_OPTIONS));
    print("");
    print(text(IDS_EXIT_CODES));
}

void printHelp(const Command& command)
{
    const std::string overwrite = command.takesOverwrite ? " [--overwrite]" : "";
    print(text(IDS_USAGE_OF_COMMAND, {text(IDS_PROGRAM), synopsis(command) + overwrite}));
    print("");
    print(text(command.help + 1));
}

}  // namespace foldertool
