#pragma once

#include "base/filesystem/file_system_item.h"

namespace Oxa_1_1::detail
{

/// The path of an item for the seam; NIL for an item of another implementation, which the seam does not know: that is
/// noted as the reason of a failure.
String seamPath(const FileSystemItem& item);

}  // namespace Oxa_1_1::detail
