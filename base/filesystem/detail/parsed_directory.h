#pragma once

#include <memory>

#include "base/filesystem/detail/level_list.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1::detail
{

/// A path to a folder in its parts. Shared by all paths into the folder, and never changed once it is shared.
struct ParsedDirectory
{
    /// Whether it starts at a root.
    bool absolute = false;
    /// From the root outwards; none of them empty.
    LevelList levels;
    /// "C:", "\\server\share" or NIL.
    String root;
    LevelVector levelVector;

    /// The drive letter; 0 for network paths and paths without root.
    Char driveLetter() const noexcept
    {
        const TextView text = root;
        return text.size() > 1 && text[0] != ':' && text[1] == ':' ? text[0] : Char();
    }
};

using SharedDirectory = std::shared_ptr<const ParsedDirectory>;

// Each of these gives null after it has reported why.

SharedDirectory parseDirectory(TextView text);
/// Text without prefix: drive paths and relative paths.
SharedDirectory parseLocal(TextView text);
/// What follows the two backslashes of a network path.
SharedDirectory parseShare(TextView text);

/// Drops "." and takes back one level for "..". Reports and changes nothing when that leads beyond the root.
bool normalizeLevels(ParsedDirectory& path);

/// The path in one text, that of a file in it when `name` is not empty. `separator` stands between and behind the
/// levels.
String fullName(const ParsedDirectory& path, Char separator, TextView name = {});
/// In the spelling for paths of any length.
String longName(const ParsedDirectory& path, TextView name = {});

/// The spelling to read the folder by: for paths of any length, unless there are dots, which nothing resolves in it.
String readablePath(const ParsedDirectory& path);

/// A copy that can be changed.
std::shared_ptr<ParsedDirectory> copyForChange(const ParsedDirectory& path);
/// With one level more.
std::shared_ptr<ParsedDirectory> appendLevel(const ParsedDirectory& path, TextView level);

/// Null, after a report, when the current folder is not known.
SharedDirectory makeAbsolute(const SharedDirectory& path);
/// Both must be absolute.
SharedDirectory makeRelative(const SharedDirectory& path, const ParsedDirectory& reference);

/// Of two paths that are both absolute or both relative.
bool isSamePath(const ParsedDirectory& a, const ParsedDirectory& b) noexcept;

}  // namespace Oxa_1_1::detail
