#pragma once

#include <memory>

#include "base/export.h"
#include "base/filesystem/iterators.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

namespace detail
{
enum class Kinds;
}

/// The items of a folder whose names match a search string, as they were when the iterator was made. They stay alive
/// as long as the iterator.
class OXA_API OxaWindowsFileSystemIterator final : public FileSystemIterator
{
   public:
    /// Reads the folder. A missing or unreadable one gives nothing, without a report.
    OxaWindowsFileSystemIterator(const Directory& directory, const String& pattern);
    /// May leave out items that are not of these kinds.
    OxaWindowsFileSystemIterator(const Directory& directory, const String& pattern, detail::Kinds kinds);
    OxaWindowsFileSystemIterator(const OxaWindowsFileSystemIterator&) = delete;
    OxaWindowsFileSystemIterator& operator=(const OxaWindowsFileSystemIterator&) = delete;
    ~OxaWindowsFileSystemIterator() override;

    std::shared_ptr<const FileSystemItem> getNext() override;
    /// Passes one item over; nothing happens at the end.
    void next();
    /// Whether no item is left.
    bool atEnd() const;

   private:
    struct Snapshot;
    std::unique_ptr<Snapshot> m_snapshot;
};

/// The folders among them.
class OXA_API OxaWindowsFileSystemDirectoryIterator final : public DirectoryIterator
{
   public:
    /// Reads the folder.
    OxaWindowsFileSystemDirectoryIterator(const Directory& directory, const String& pattern);
    std::shared_ptr<const Directory> getNext() override;

   private:
    OxaWindowsFileSystemIterator m_iterator;
};

/// The files among them.
class OXA_API OxaWindowsFileSystemFileIterator : public FileIterator
{
   public:
    /// Reads the folder.
    OxaWindowsFileSystemFileIterator(const Directory& directory, const String& pattern);
    /// `other` is left at its end.
    /// @{
    OxaWindowsFileSystemFileIterator(OxaWindowsFileSystemFileIterator&& other) noexcept;
    OxaWindowsFileSystemFileIterator& operator=(OxaWindowsFileSystemFileIterator&& other) noexcept;
    /// @}
    ~OxaWindowsFileSystemFileIterator() override;
    std::shared_ptr<const File> getNext() override;

   protected:
    /// At its end.
    OxaWindowsFileSystemFileIterator() noexcept;

   private:
    std::unique_ptr<OxaWindowsFileSystemIterator> m_iterator;
};

}  // namespace Oxa_1_1
