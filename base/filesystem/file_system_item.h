#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>

#include "base/export.h"
#include "base/object/visitor_core.h"
#include "base/platform/platform_types.h"
#include "base/string/oxa_string.h"

struct _stat64i32;

namespace Oxa_1_1
{

class Directory;
class IProgress;
class uZClass;

/// The base of what has messages.
class OxaMessages
{
};

/// A path to a file or folder, which need not be there. Making and changing paths asks nothing of the disk, except
/// for the current folder; failures come back as false, an empty pointer, NIL or a code, and their reasons go to the
/// error sink. Names are compared without regard to case.
///
/// Threads: a path may be read by many at a time; a change needs exclusive access.
class OXA_API FileSystemItem : public VisitorCore, protected OxaMessages
{
   public:
    /// Undetermined: the items are of different kinds, or one could not be made absolute.
    enum ComparisonResult
    {
        Undetermined = 0,
        Equal = 1,
        Different = 2
    };
    /// Takes the text of a failure.
    using ErrorSink = std::function<void(const String&)>;

    /// The class record "FileSystemItem", a root.
    static const uZClass* Class();

    /// The file or else the folder that stands at the path; empty when there is neither.
    /// @{
    static std::shared_ptr<FileSystemItem> fromExistingString(const String& path);
    static std::shared_ptr<FileSystemItem> fromExistingString(const Directory& directory, const String& name);
    /// @}

    /// Passes a message on to the error sink.
    static void reportError(const String& message);
    /// Sets who gets the messages about refused paths and failed operations, on any thread; empty for nobody, as at
    /// the start. Returns the former one.
    static ErrorSink setErrorSink(ErrorSink sink);

    FileSystemItem() = default;
    FileSystemItem(const FileSystemItem&) = default;
    FileSystemItem& operator=(const FileSystemItem&) = default;

    /// The class record of the dynamic type.
    virtual const uZClass* getClassType() const;
    virtual ~FileSystemItem();

    /// Whether it is there, as what it is: a file or a folder.
    virtual bool exists() const;
    /// "C:\a\b.txt"; folders end with a backslash.
    virtual String getFullName() const = 0;
    /// The same in the spelling that takes paths of any length: "\\?\C:\a\b.txt"; only of absolute paths.
    virtual String getFullNameUnicode() const = 0;
    /// The same with slashes.
    virtual String getFullNameUnix() const = 0;
    /// The last part of the path: "b.txt".
    virtual String getName() const = 0;
    /// What follows the last period of the name, without it; empty when there is none.
    virtual String getExtension() const = 0;
    /// The name up to its last period.
    virtual String getBaseName() const = 0;
    /// Replaces the last part of the path. Nothing on disk is renamed.
    virtual void setName(const String& name) = 0;
    /// Makes it when it is missing; else sets its last-write time to now.
    virtual bool touch() const = 0;
    /// Removes it; true when it was not there. A folder must be empty; of a link, the link itself is removed.
    virtual bool remove() const = 0;
    /// Whether both are the same path, without regard to case; a relative one is taken from the current folder.
    virtual ComparisonResult equals(const FileSystemItem& other) const = 0;
    /// Copies to a path. 0 for success, 1 for a path that is none, 18 for any other failure, 24 when the copy was
    /// aborted, 221 when the disk is full.
    virtual int copy(const String& target, bool overwrite, std::shared_ptr<IProgress> progress) const = 0;
    /// Copies into a folder, under the same name. The copy; empty on failure.
    virtual std::shared_ptr<const FileSystemItem> copy(const Directory& target, bool overwrite,
                                                       std::shared_ptr<IProgress> progress) const = 0;
    /// Moves to a path on the same disk. False when something is there that must not be replaced.
    virtual bool move(const String& target, bool overwrite) const = 0;
    /// What the system's stat tells; false for what is missing, and for files of 2 GiB and more.
    virtual bool stat(struct _stat64i32& result) const = 0;
    /// Whether it may be accessed: 0 is it there, 2 write, 4 read, 6 both.
    virtual bool access(int mode) const = 0;
    /// 100 ns ticks since 1601, UTC; false for what is missing.
    /// @{
    virtual bool getCreationTime(FILETIME* time) const = 0;
    virtual bool getLastWriteTime(FILETIME* time) const = 0;
    /// @}
    /// The folder that it lies in; empty for a root and for a relative folder without levels.
    virtual std::shared_ptr<const Directory> getParent() const = 0;
    /// Whether the path begins at a root.
    virtual bool isAbsolute() const = 0;
    /// In bytes; of a folder, the sum of all files below it.
    virtual bool size(unsigned long long& bytes) const = 0;

    /// The same path from the root on; empty when the current folder is not known.
    std::shared_ptr<const FileSystemItem> makeAbsolute() const;
    /// The path as seen from `reference`; paths on other drives stay absolute.
    std::shared_ptr<const FileSystemItem> makeRelative(const Directory& reference) const;

    /// The path for the standard library, in the system's own spelling.
    std::filesystem::path toPath() const;

    /// Whether both are the same path; false when that is undetermined.
    friend bool operator==(const FileSystemItem& a, const FileSystemItem& b) { return a.equals(b) == Equal; }
};

/// Writes the full name, as an ANSI text; utf8(item) writes it in UTF-8.
OXA_API std::ostream& operator<<(std::ostream& stream, const FileSystemItem& item);

/// The full name for streams that take UTF-8: std::cout << utf8(file).
[[nodiscard]] OXA_API Utf8Bytes utf8(const FileSystemItem& item);

}  // namespace Oxa_1_1

/// Equal items have equal hashes; a relative path is taken from the current folder.
template <>
struct OXA_API std::hash<Oxa_1_1::FileSystemItem>
{
    /// Of the absolute path, blind to case.
    std::size_t operator()(const Oxa_1_1::FileSystemItem& item) const;
};
