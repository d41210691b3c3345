#pragma once

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"

/// What the library has made for itself and takes away again, at the end of scopes: nothing is thrown, and the last
/// error stays.
namespace Oxa_1_1::detail
{

/// With all that is in it, even what is read-only. What stays is reported. For the library's own file system.
void removeOwnFolder(const Directory& folder) noexcept;
/// Even a read-only one, in the library's own file system.
void removeOwnFile(const File& file) noexcept;

}  // namespace Oxa_1_1::detail
