#include "examples/foldertool/commands.h"

#include <algorithm>
#include <array>

#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

std::span<const Command> allCommands()
{
    static constexpr std::array COMMANDS{
        Command{"tour", IDS_TOUR_SUMMARY, 1, 1, false, commands::tour},
        Command{"list", IDS_LIST_SUMMARY, 2, 2, false, commands::list},
        Command{"copy", IDS_COPY_SUMMARY, 2, 2, true, commands::copy},
        Command{"move", IDS_MOVE_SUMMARY, 2, 2, true, commands::move},
        Command{"remove", IDS_REMOVE_SUMMARY, 1, 1, false, commands::remove},
        Command{"size", IDS_SIZE_SUMMARY, 1, 1, false, commands::size},
        Command{"info", IDS_INFO_SUMMARY, 1, 1, false, commands::info},
        Command{"symbols", IDS_SYMBOLS_SUMMARY, 1, 1, false, commands::symbols},
        Command{"resources", IDS_RESOURCES_SUMMARY, 1, 1, false, commands::resources},
        Command{"stack", IDS_STACK_SUMMARY, 0, 0, false, commands::stack},
        Command{"help", IDS_HELP_SUMMARY, 0, 1, false, commands::help},
    };
    return COMMANDS;
}

const Command& findCommand(const std::string& name)
{
    const auto found = std::ranges::find(allCommands(), name, &Command::name);
    if (found == allCommands().end()) throw UsageError(text(IDS_UNKNOWN_COMMAND, {escaped(name)}));
    return *found;
}

}  // namespace foldertool
