#pragma once

#include <cstdint>

#include "base/char.h"

/// What the user's desktop does with files and folders.
namespace Oxa_1_1::platform
{

/// Opens a file as a double click would. False when no program could be started for it.
bool openWithDefaultApp(TextView path);

/// Opens a window on a folder.
bool openFolderWindow(TextView path);

/// Opens a window on the folder of a file or folder, with that selected.
bool showInFolder(TextView path);

/// What the desktop is asked for: the arguments of the call that Windows has for it.
struct ShellRequest
{
    /// Null for the default one.
    const Char* verb = nullptr;
    Text path;
    /// Null for the current one.
    const Char* workingFolder = nullptr;
    int show = 0;
    /// To show the path in its folder; nothing else counts then.
    bool isSelection = false;
};

/// A hook for tests: what is asked for goes to `hook` instead of the desktop, on all threads; null ends that. Results
/// are those of ShellExecute: 33 and more for success, below 32 for a failure. Returns the former hook.
using ShellHook = std::intptr_t (*)(const ShellRequest& request);
ShellHook setShellHook(ShellHook hook) noexcept;

}  // namespace Oxa_1_1::platform
