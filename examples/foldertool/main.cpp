// foldertool: works on folders with the facilities of the library. A small module of the suite, to read and to start
// from.

#include <exception>

#include "examples/foldertool/command_line.h"
#include "examples/foldertool/commands.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/module_report.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

namespace
{

enum ExitCode : int
{
    DONE = 0,
    FAILED = 1,
    WRONG_USAGE = 2,
    INTERRUPTED = 130
};

void check(const CommandLine& line, const Command& command)
{
    if (line.overwrite && !command.takesOverwrite) throw UsageError(text(IDS_OPTION_NOT_TAKEN, {line.command}));
    if (line.operands.size() < command.minOperands) throw UsageError(text(IDS_TOO_FEW_OPERANDS, {line.command}));
    if (line.operands.size() > command.maxOperands) throw UsageError(text(IDS_TOO_MANY_OPERANDS, {line.command}));
}

bool run(const CommandLine& line)
{
    if (line.command.empty())
    {
        if (line.help)
            printHelp();
        else if (line.version)
            print(text(IDS_PROGRAM) + ' ' + ownVersion());
        else
            throw UsageError(text(IDS_NO_COMMAND));
        return true;
    }
    const Command& command = findCommand(line.command);
    if (line.help)
    {
        printHelp(command);
        return true;
    }
    check(line, command);
    return command.run(line);
}

int runProgram(const Arguments& arguments)
{
    try
    {
        const bool isDone = run(parse(arguments));
        flushOutput();
        return isDone ? DONE : FAILED;
    }
    catch (const UsageError& error)
    {
        complain(error.what());
        return WRONG_USAGE;
    }
    catch (const Stopped& stopped)
    {
        // Nothing is said to those who only left off reading.
        if (system::stopCode() == INTERRUPTED) complain(stopped.what());
        return system::stopCode() != 0 ? system::stopCode() : FAILED;
    }
    catch (const std::exception& error)
    {
        complain(error.what());
        return FAILED;
    }
}

}  // namespace

}  // namespace foldertool

int main(int argc, char** argv)
{
    foldertool::system::prepare();
    return foldertool::runProgram(foldertool::system::arguments(argc, argv));
}
