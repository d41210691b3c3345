#pragma once

#include "examples/foldertool/operands.h"

namespace foldertool
{

/// A new folder where the system keeps temporary files, for the user alone. It is removed with everything in it.
class TemporaryFolder
{
   public:
    /// Throws a Failure when there is no place for that many bytes.
    explicit TemporaryFolder(unsigned long long bytes);
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const Oxa_1_1::Directory& folder() const { return *m_folder; }

   private:
    SharedFolder m_folder;
};

/// Removes a folder with everything in it, read-only files included.
bool removeFolder(const Oxa_1_1::Directory& folder);

}  // namespace foldertool
