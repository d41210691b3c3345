#pragma once

#include <optional>
#include <string_view>

#include "base/char.h"
#include "base/platform/platform_types.h"

/// A hook for tests: who sets an observer sees each operation on files before it is made, with the paths as the system
/// is to get them, and can make it fail in ways that are hard to provoke.
namespace Oxa_1_1::platform
{

class FileObserver
{
   public:
    FileObserver() = default;
    FileObserver(const FileObserver&) = delete;
    FileObserver& operator=(const FileObserver&) = delete;
    virtual ~FileObserver() = default;

    /// `operation` is the name of the function in files.h, or "nextEntry" for a step through a folder. `target` is
    /// empty unless the operation takes two paths. A code that is returned becomes the last error: the operation fails
    /// with it, and the system is not asked. Called on the thread of the operation.
    virtual std::optional<DWORD> called(std::string_view operation, TextView path, TextView target) = 0;
};

/// Sets the observer of all threads, null for none, and returns the former one. It must stay alive while operations
/// run.
FileObserver* setFileObserver(FileObserver* observer) noexcept;
FileObserver* fileObserver() noexcept;

}  // namespace Oxa_1_1::platform
