#pragma once

#include <string>

#include "base/export.h"

namespace Oxa_1_1
{

/// What is told how a copy goes on. It has no answer to give; an exception that it throws ends the copy, removes the
/// incomplete file and comes out of the call.
class IProgress
{
   public:
    /// The share of the file that is copied, in per cent; at least once for each file that is copied on disk. For an
    /// empty file the value is not a number.
    virtual void onProgress(double percent) = 0;
    /// For receivers' own use; the library never calls it.
    virtual void onMessage(const std::string&) {}
    /// The name of a file, in UTF-8, before it is copied.
    virtual void onItem(const std::string& name) = 0;
    virtual ~IProgress() = default;
};

}  // namespace Oxa_1_1
