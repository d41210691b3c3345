#pragma once

#include <memory>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"

namespace Oxa_1_1
{

/// A new, empty folder that only this user may enter, with a name that nobody else has; removed at the end with all
/// that is in it, read-only or not, unless it is kept. One thread at a time.
class OXA_API TemporaryFolder
{
   public:
    /// In the folder that the system names for such things, or in `parent`. `prefix` begins the name.
    /// @{
    [[nodiscard]] explicit TemporaryFolder(const String& prefix = OXA_TEXT("oxa"));
    [[nodiscard]] explicit TemporaryFolder(const Directory& parent, const String& prefix = OXA_TEXT("oxa"));
    /// @}
    /// `other` has none afterwards; what this one had is removed.
    /// @{
    TemporaryFolder(TemporaryFolder&& other) noexcept;
    TemporaryFolder& operator=(TemporaryFolder&& other) noexcept;
    /// @}
    ~TemporaryFolder();

    /// Empty when none could be made: the parent is missing or cannot be written, or the prefix is no name.
    const std::shared_ptr<const Directory>& directory() const noexcept { return m_directory; }
    /// Lets it stay, and gives it away.
    std::shared_ptr<const Directory> keep() noexcept;

   private:
    std::shared_ptr<const Directory> m_directory;
};

/// The same for an empty file, which only this user may read.
class OXA_API TemporaryFile
{
   public:
    /// As for folders.
    /// @{
    [[nodiscard]] explicit TemporaryFile(const String& prefix = OXA_TEXT("oxa"));
    [[nodiscard]] explicit TemporaryFile(const Directory& parent, const String& prefix = OXA_TEXT("oxa"));
    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&& other) noexcept;
    /// @}
    ~TemporaryFile();

    /// Empty when none could be made.
    const std::shared_ptr<const File>& file() const noexcept { return m_file; }
    /// Lets it stay, and gives it away.
    std::shared_ptr<const File> keep() noexcept;

   private:
    std::shared_ptr<const File> m_file;
};

}  // namespace Oxa_1_1
