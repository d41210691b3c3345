#pragma once

#include <iosfwd>

#include "base/filesystem/file_system_item.h"
#include "base/object/info_string_map.h"

namespace foldertool
{

/// What is known of a file or folder.
Oxa_1_1::InfoStringMap infoOf(const Oxa_1_1::FileSystemItem& item);

/// A line "key = value" for each entry.
std::vector<std::string> linesOf(const Oxa_1_1::InfoStringMap& info);

}  // namespace foldertool
