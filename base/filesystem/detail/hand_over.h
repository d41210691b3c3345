#pragma once

#include <memory>

#include "base/filesystem/file.h"

/// Copies between files of different implementations.
namespace Oxa_1_1::detail
{

/// While one exists, a copy has been handed to the other side's implementation on this thread. A side that is asked
/// meanwhile does the work itself, so that it ends.
class HandOver
{
   public:
    static bool isUnderWay() noexcept;

    HandOver() noexcept;
    HandOver(const HandOver&) = delete;
    HandOver& operator=(const HandOver&) = delete;
    ~HandOver();

   private:
    bool m_wasUnderWay;
};

/// Copies the content through streams, over whatever is there. 0, or 18 when a stream cannot be opened, read or
/// written; an incomplete target is removed.
int copyThroughStreams(const File& source, const File& target);

}  // namespace Oxa_1_1::detail
