#pragma once

#include <string_view>

#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// A step of an operation on a tree that failed.
struct TreeFailure
{
    /// What was tried: "openFolder", "copyFile" and the like; a literal.
    std::string_view operation;
    String path;
    /// Numbered as on Windows everywhere; getWindowsError() gives the text.
    unsigned long code = 0;
};

}  // namespace Oxa_1_1
