#pragma once

#include <map>
#include <set>
#include <string>

#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

/// What lies on disk: each path with its kind and content.
using World = std::map<std::string, std::string>;

inline World worldIn(const TempFolder& temp)
{
    World world;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(temp.path()))
    {
        const std::string name = entry.path().lexically_relative(temp.path()).string();
        world[name] = entry.is_symlink()     ? "link " + std::filesystem::read_symlink(entry.path()).string()
                      : entry.is_directory() ? "folder"
                                             : "file " + temp.read(name);
    }
    return world;
}

inline bool isBelow(const std::string& name, const std::string& folder) { return name.starts_with(folder + "/"); }

inline World below(const World& world, const std::string& folder)
{
    World part;
    for (const auto& each : world)
        if (isBelow(each.first, folder)) part.insert(each);
    return part;
}

/// Of the files.
inline std::set<std::string> contentsOf(const World& world)
{
    std::set<std::string> contents;
    for (const auto& [name, content] : world)
        if (content.starts_with("file")) contents.insert(content);
    return contents;
}

inline void makeEmpty(const TempFolder& temp, const std::string& folder = {})
{
    for (const auto& entry : std::filesystem::directory_iterator(temp.path(folder)))
        std::filesystem::remove_all(entry.path());
}

}  // namespace Oxa_1_1::test
