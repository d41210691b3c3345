#pragma once

#include "base/platform/files/files.h"

/// Links themselves, by the rules of files.h.
namespace Oxa_1_1::platform
{

/// What a link says, in the spelling of paths, as it was written: perhaps relative, perhaps to nowhere. Empty when the
/// path is no link.
Text readLink(TextView path);

enum class LinkKind
{
    TO_FILE,
    TO_FOLDER,
    /// To a folder on a disk of this machine, by an absolute path. Where there is no such thing, a link to a folder.
    JUNCTION
};
/// Fails with 80 or 183 when something stands at `path`. The target need not be there.
bool createLink(TextView path, TextView target, LinkKind kind);

}  // namespace Oxa_1_1::platform
