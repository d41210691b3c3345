#pragma once

#include <fstream>
#include <list>
#include <memory>
#include <string_view>

#include "base/filesystem/file_impl.h"
#include "base/filesystem/file_system_item.h"
#include "base/filesystem/progress.h"

namespace Oxa_1_1
{

/// A path to a file.
class OXA_API File : public FileSystemItem
{
   public:
    /// Makes implementations from text; each operation gives null for a text that it does not accept.
    class OXA_API ImplCreator
    {
       public:
        ImplCreator() = default;
        ImplCreator(const ImplCreator&) = delete;
        ImplCreator& operator=(const ImplCreator&) = delete;
        virtual ~ImplCreator() = default;
        /// For a name in a folder, and for a whole path.
        /// @{
        virtual std::unique_ptr<IFileImpl> create(const Directory& directory, const String& name) const = 0;
        virtual std::unique_ptr<IFileImpl> create(const String& path) const = 0;
        /// @}
    };

    /// The class record "File", derived from "FileSystemItem".
    static const uZClass* Class();

    /// Of the first creator that accepts the text; empty when none does. One backslash at the end is dropped.
    static std::shared_ptr<File> fromString(const String& path);
    /// The file of this name in the folder; empty for a name that is none.
    static std::shared_ptr<File> fromString(const Directory& directory, const String& name);
    /// The same from UTF-8; empty for a null pointer.
    /// @{
    static std::shared_ptr<File> fromUTF8(std::string_view path);
    static std::shared_ptr<File> fromUTF8(std::u8string_view path);
    static std::shared_ptr<File> fromUTF8(const char* path);
    /// @}
    /// From the system's own spelling.
    static std::shared_ptr<File> fromPath(const std::filesystem::path& path);

    /// Adds a creator, which is asked after those before it. False when it is there already.
    static bool registerImplCreator(std::shared_ptr<const ImplCreator> creator);
    /// False when it is not there.
    static bool unregisterImplCreator(const std::shared_ptr<const ImplCreator>& creator);

    /// Nothing to do: kept for callers.
    /// @{
    static void initStatics();
    static void clearStatics();
    /// @}

    /// `impl` must not be null.
    explicit File(std::unique_ptr<IFileImpl> impl) noexcept;
    /// An independent path.
    /// @{
    File(const File& other);
    File& operator=(const File& other);
    /// @}
    ~File() override;

    /// What does the work; never null, and owned by this path.
    IFileImpl* getImpl() const noexcept { return m_impl.get(); }

    const uZClass* getClassType() const override;
    bool exists() const override;
    String getFullName() const override;
    String getFullNameUnicode() const override;
    String getFullNameUnix() const override;
    String getName() const override;
    String getExtension() const override;
    String getBaseName() const override;
    /// Splits the name at its last period, unchecked.
    void setName(const String& name) override;
    bool touch() const override;
    bool remove() const override;
    ComparisonResult equals(const FileSystemItem& other) const override;
    int copy(const String& target, bool overwrite, std::shared_ptr<IProgress> progress) const override;
    std::shared_ptr<const FileSystemItem> copy(const Directory& target, bool overwrite,
                                               std::shared_ptr<IProgress> progress) const override;
    /// Copies to another file, with the codes of FileSystemItem::copy(). The receiver may be empty.
    int copy(const File& target, bool overwrite, std::shared_ptr<IProgress> progress) const;
    /// 1 for an empty pointer.
    int copy(const std::shared_ptr<const File>& target, bool overwrite) const;
    /// Copies `source` to this file. This file; empty on failure.
    std::shared_ptr<const FileSystemItem> copyFrom(const File& source, bool overwrite,
                                                   std::shared_ptr<IProgress> progress) const;
    /// Renames. An existing target is replaced when `overwrite`, and makes the move fail silently otherwise.
    /// @{
    bool move(const String& target, bool overwrite) const override;
    bool move(const File& target, bool overwrite) const;
    /// @}
    bool stat(struct _stat64i32& result) const override;
    bool access(int mode) const override;
    bool getCreationTime(FILETIME* time) const override;
    bool getLastWriteTime(FILETIME* time) const override;
    std::shared_ptr<const Directory> getParent() const override;
    bool isAbsolute() const override;
    bool size(unsigned long long& bytes) const override;

    /// The folder part of the path; never empty.
    std::shared_ptr<const Directory> getDirectory() const;
    /// As FileSystemItem::makeAbsolute() and FileSystemItem::makeRelative().
    /// @{
    std::shared_ptr<const File> makeAbsolute() const;
    std::shared_ptr<const File> makeRelative(const Directory& reference) const;
    /// @}
    /// The file beside this one with another extension; NIL and empty drop the period, too.
    std::shared_ptr<const File> replaceExtension(const String& extension) const;

    /// In bytes; false when it cannot be read.
    bool getFileSize(ULARGE_INTEGER& size) const;
    /// True for the very same object; else false when a size cannot be read.
    bool hasEqualSize(const File& other) const;
    /// Makes all missing folders above the file.
    bool createParentDirectories() const;
    /// Kept on purpose: a file that is missing counts as read-only.
    bool isReadOnly() const;
    /// 0, also when the system refuses, or 168 when the attributes cannot be read.
    /// @{
    int setReadOnly(bool readOnly) const;
    int setAsReadOnly() const;
    int unsetAsReadOnly() const;
    /// @}
    /// A file is its own lock: its full name.
    String getLockFilePath() const;

    /// A stream, opened in the mode of std::ios_base plus input; never null, but in its failed state when the file
    /// cannot be opened.
    std::unique_ptr<std::ifstream> openRead(int mode = std::ios_base::binary) const;
    /// The same for output.
    std::unique_ptr<std::ofstream> openWrite(int mode = std::ios_base::binary) const;

    /// Opens the file as a double click would; whether an application took it.
    /// @{
    bool openWithDefaultApp() const;
    static bool openWithDefaultApp(const String& path);
    /// @}
    /// Shows the file in the desktop's file manager; false when it is missing or relative.
    bool showInExplorer() const;

    /// The registered creators, the oldest first.
    static std::list<std::shared_ptr<const ImplCreator>> creators;

   private:
    class OXA_HIDDEN ClassCreator;
    struct Trimmed
    {
    };

    OXA_HIDDEN static std::shared_ptr<File> fromString(const String& path, Trimmed);

    std::unique_ptr<IFileImpl> m_impl;
};

}  // namespace Oxa_1_1

template <>
struct std::hash<Oxa_1_1::File> : std::hash<Oxa_1_1::FileSystemItem>
{
};
