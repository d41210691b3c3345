// Shows the functions that are under way while it does so.

#include "examples/foldertool/call_stack.h"
#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/output.h"

namespace foldertool
{

bool commands::stack(const CommandLine&)
{
    for (const std::string& frame : callStack()) print(frame);
    return true;
}

}  // namespace foldertool
