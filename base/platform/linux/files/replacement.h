#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "base/platform/linux/files/file_descriptor.h"

namespace Oxa_1_1::platform
{

/// A name in an open folder.
struct FilePlace
{
    FileDescriptor folder;
    std::string name;
};

/// Where the file lies that a path, from an open folder on, leads to: links at its end are followed. None when it leads
/// nowhere.
std::optional<FilePlace> placeBehind(int folder, std::string path);

/// Puts a new link to `text` in the place of a file or link, which stays until it can be done. False leaves `errno`.
bool replaceByLink(int folder, const char* name, const char* text);

/// Gives an open file or folder the owner that another one has, by its status. False when this user may not.
bool takeOwner(const struct stat& from, int to);
/// The extended attributes of an open file or folder, with the finer permissions, but those that belong to the system,
/// which gives every file its own. False when one could not be taken over.
bool takeExtendedAttributes(int from, int to);

/// A new file that is written aside, and takes the place of another when it is whole. Until then it has no name where
/// the file system has files without; what is not put in place is gone at the end.
class Replacement
{
   public:
    enum class Result
    {
        DONE,
        /// The last error tells why.
        FAILED,
        /// The system lets files be written here, but not be exchanged. Nothing has changed.
        REFUSED
    };

    /// For the open file that `folder` and `path` lead to. It has its owner and extended attributes. None when that
    /// cannot be, or the file has more names than one: then it has to be written in place.
    static std::optional<Replacement> of(int existing, int folder, const char* path);

    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    Replacement(Replacement&&) noexcept = default;
    Replacement& operator=(Replacement&&) = delete;
    ~Replacement();

    int get() const noexcept { return m_file.get(); }
    Result takePlace();

   private:
    explicit Replacement(FilePlace&& place) noexcept : m_place(std::move(place)) {}

    bool create();
    bool giveName();

    FilePlace m_place;
    FileDescriptor m_file;
    /// In the same folder; empty while it has none.
    std::string m_ownName;
};

}  // namespace Oxa_1_1::platform
