#include "base/platform/linux/files/current_folder.h"

#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string_view>

namespace Oxa_1_1::platform
{

namespace
{

/// Empty for null.
std::string takeText(char* text)
{
    const std::unique_ptr<char, decltype(&std::free)> owned(text, &std::free);
    return text != nullptr ? text : std::string();
}

}  // namespace

std::string currentFolderPath() { return takeText(getcwd(nullptr, 0)); }

std::optional<std::string> currentFolderBelow(const std::string& folder)
{
    std::string top = takeText(realpath(folder.c_str(), nullptr));
    const std::string current = currentFolderPath();
    if (top.empty() || current.empty()) return std::nullopt;
    if (current == top) return std::string();
    if (top.back() != '/') top += '/';
    if (!current.starts_with(top)) return std::nullopt;
    return current.substr(top.size());
}

}  // namespace Oxa_1_1::platform
