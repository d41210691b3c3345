// Lists the resources in a program or library for Windows.

#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "base/module/resource_file.h"
#include "examples/foldertool/commands/commands.h"
#include "examples/foldertool/failure.h"
#include "examples/foldertool/operands.h"
#include "examples/foldertool/output.h"
#include "examples/foldertool/system.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

/// The types that the system has numbers for, by their usual names.
std::string typeText(const ResourceInfo& resource)
{
    constexpr std::array<std::pair<std::string_view, const char*>, 14> KNOWN{{{"#1", "CURSOR"},
                                                                              {"#2", "BITMAP"},
                                                                              {"#3", "ICON"},
                                                                              {"#4", "MENU"},
                                                                              {"#5", "DIALOG"},
                                                                              {"#6", "STRINGTABLE"},
                                                                              {"#9", "ACCELERATORS"},
                                                                              {"#10", "RCDATA"},
                                                                              {"#11", "MESSAGETABLE"},
                                                                              {"#12", "GROUP_CURSOR"},
                                                                              {"#14", "GROUP_ICON"},
                                                                              {"#16", "VERSIONINFO"},
                                                                              {"#23", "HTML"},
                                                                              {"#24", "MANIFEST"}}};
    std::string type = escaped(resource.type.stringUTF8());
    for (const auto& [number, name] : KNOWN)
        if (type == number) return name;
    return type;
}

std::string row(const std::string& type, const std::string& name, const std::string& language, const std::string& size)
{
    return left(type, 14) + "  " + left(name, 32) + right(language, 8) + right(size, 14);
}

}  // namespace

bool commands::resources(const CommandLine& line)
{
    constexpr std::size_t MEGABYTES = 1000;
    const std::string content = contentOf(line.operands[0], MEGABYTES);
    const auto resources = listResources(std::as_bytes(std::span(content)));
    if (!resources) throw Failure(text(IDS_NO_WINDOWS_FILE, {nameText(line.operands[0])}));

    if (!resources->empty())
        print(row(text(IDS_COLUMN_TYPE), text(IDS_COLUMN_NAME), text(IDS_COLUMN_LANGUAGE), text(IDS_COLUMN_BYTES)));
    for (const ResourceInfo& resource : *resources)
        print(row(typeText(resource), escaped(resource.name.stringUTF8()), std::to_string(resource.language),
                  numberText(resource.size)));
    print(counted(IDS_ONE_RESOURCE, resources->size()));
    return true;
}

}  // namespace foldertool
