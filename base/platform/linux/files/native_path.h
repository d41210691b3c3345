#pragma once

#include <string>
#include <string_view>

#include "base/char.h"

/// Windows spellings of paths and the paths that they stand for.
///
/// Every name on disk has one spelling, which leads back to the same bytes. What Windows forbids in names stands in
/// the private-use area, as other systems that share disks with Windows do: a character c is U+F000 + c. A byte that
/// is not UTF-8 is the unpaired surrogate U+DC00 + byte, and so are the bytes of a name that itself holds one of
/// U+F001 to U+F07F.
namespace Oxa_1_1::platform
{

/// \home\u for /home/u or //home/u. Drives and shares are not recognised again: their folders have spellings like any
/// other.
Text spellingOf(std::string_view nativePath);

/// /home/u for \home\u or /home/u; paths on drives and shares lead to the folder that stands for them, and C:x from the
/// current folder on when that is on the drive. Surrogates that stand for no byte become U+FFFD. What stands for a
/// separator or for all of "." and ".." stays as it is.
std::string nativePathOf(TextView spelling);

/// Text that names of files may stand in: U+DC00 + byte for each byte that is not UTF-8, all else as it is.
Text decodeKeepingBytes(std::string_view bytes);

/// Spells the single name of a folder's entry.
void spellName(std::string_view name, Text& spelling);

/// The folder that stands for the drive or the share of a path; empty when the path does not start at one.
std::string nativeRootOf(TextView spelling);
/// Whether a path leads to a share: \\server\share.
bool isOnShare(TextView spelling);

}  // namespace Oxa_1_1::platform
