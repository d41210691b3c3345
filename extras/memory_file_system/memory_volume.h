#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// The names from the root to a file or folder.
using MemoryPath = std::vector<String>;

/// An error code of the system; 0 for success.
using MemoryError = unsigned long;

namespace memory_error
{
inline constexpr MemoryError NONE = 0;
inline constexpr MemoryError NOT_FOUND = 2;
inline constexpr MemoryError PATH_NOT_FOUND = 3;
inline constexpr MemoryError ACCESS_DENIED = 5;
inline constexpr MemoryError EXISTS = 80;
inline constexpr MemoryError DISK_FULL = 112;
inline constexpr MemoryError NOT_EMPTY = 145;
inline constexpr MemoryError ALREADY_EXISTS = 183;
inline constexpr MemoryError ABORTED = 1235;
}  // namespace memory_error

enum class MemoryOperation
{
    READ,
    WRITE,
    REMOVE,
    CREATE_FOLDER,
    RENAME
};

/// The files and folders of one file system in memory. Names differ by more than case. Safe for many threads.
class MemoryVolume
{
   public:
    struct Status
    {
        bool isFolder = false;
        bool isReadOnly = false;
        std::uint64_t size = 0;
        /// 100 ns ticks since 1601.
        std::uint64_t created = 0;
        std::uint64_t written = 0;
    };
    struct Entry
    {
        String name;
        bool isFolder = false;
    };

    MemoryVolume();
    ~MemoryVolume();

    // ---- Faults ---------------------------------------------------------------------------------------------------

    /// From now on the operation fails with this code; 0 ends that.
    void fail(MemoryOperation operation, MemoryError code);
    /// How many bytes all files may hold together.
    void setCapacity(std::uint64_t bytes);
    /// Lets an entry vanish as soon as the folder that it is in has been listed.
    void vanishWhenListed(const MemoryPath& path);
    /// Files leave every copy to the other side when it is of another implementation.
    void setHandsOver(bool handsOver);
    bool handsOver() const;

    // ---- Files and folders ----------------------------------------------------------------------------------------

    std::optional<Status> status(const MemoryPath& path) const;
    MemoryError read(const MemoryPath& path, std::string& content) const;
    /// The folder must be there.
    MemoryError write(const MemoryPath& path, std::string content);
    /// Sets the last-write time to now.
    MemoryError touch(const MemoryPath& path);
    MemoryError setReadOnly(const MemoryPath& path, bool isReadOnly);
    MemoryError createFolder(const MemoryPath& path);
    /// A file, or an empty folder.
    MemoryError remove(const MemoryPath& path);
    /// An existing file is replaced.
    MemoryError rename(const MemoryPath& from, const MemoryPath& to);
    std::vector<Entry> list(const MemoryPath& path);

   private:
    struct Node;
    using Children = std::map<String, std::unique_ptr<Node>, StringLess2>;

    Node* find(const MemoryPath& path) const;
    /// The folder that it is in, or would be; null when that is missing.
    Node* findParent(const MemoryPath& path) const;
    MemoryError fault(MemoryOperation operation) const;
    MemoryError place(const MemoryPath& path, Node*& parent) const;
    MemoryError removeUnlocked(const MemoryPath& path);

    mutable std::mutex m_mutex;
    std::unique_ptr<Node> m_root;
    std::map<MemoryOperation, MemoryError> m_faults;
    std::vector<MemoryPath> m_vanishing;
    std::uint64_t m_capacity = UINT64_MAX;
    std::uint64_t m_used = 0;
    bool m_handsOver = false;
};

}  // namespace Oxa_1_1
