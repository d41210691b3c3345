#include "examples/foldertool/command_line.h"

#include "base/string/oxa_string.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

/// -lang=DEU or /lang=DEU, in any case, with up to three letters: what the library takes for it.
bool isLanguage(const String& argument)
{
    const bool isOption = argument.startsWith(OXA_TEXT("-")) || argument.startsWith(OXA_TEXT("/"));
    return isOption && argument.length() <= 9 && argument.substr(1, 6).compareIgnoreCase(OXA_TEXT("lang=")) == 0;
}

bool takeOption(CommandLine& line, const String& option)
{
    if (isLanguage(option)) return true;
    if (option == OXA_TEXT("--overwrite")) return line.overwrite = true;
    if (option == OXA_TEXT("--help") || option == OXA_TEXT("-h")) return line.help = true;
    if (option == OXA_TEXT("--version")) return line.version = true;
    return false;
}

void takeOperand(CommandLine& line, const std::filesystem::path& operand)
{
    if (line.command.empty())
        line.command = system::bytesOf(operand);
    else
        line.operands.push_back(operand);
}

}  // namespace

CommandLine parse(const Arguments& arguments)
{
    CommandLine line;
    bool mayBeOption = true;
    for (const std::filesystem::path& argument : arguments)
    {
        const String argumentText = system::textOf(argument);
        if (mayBeOption && argumentText == OXA_TEXT("--"))
            mayBeOption = false;
        else if (mayBeOption && takeOption(line, argumentText))
            continue;
        else if (mayBeOption && argumentText.startsWith(OXA_TEXT("-")) && argumentText.length() > 1)
            throw UsageError(text(IDS_UNKNOWN_OPTION, {nameText(argument)}));
        else
            takeOperand(line, argument);
    }
    return line;
}

}  // namespace foldertool
