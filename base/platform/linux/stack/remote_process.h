#pragma once

#include <sys/types.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/formats/elf_file.h"
#include "base/formats/unwind.h"
#include "base/platform/linux/files/mapped_file.h"
#include "base/platform/stack/call_stack.h"

/// Other processes: their modules and their threads.
namespace Oxa_1_1::platform
{

struct RemoteModule
{
    /// As the process knows it; not a path for the system's own code.
    std::string file;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// The modules that a process has mapped, by their addresses, without files that are mapped as data; empty when the
/// process does not exist or may not be seen.
std::vector<RemoteModule> listRemoteModules(pid_t process);

/// The files of the modules of a process.
class RemoteModules
{
   public:
    explicit RemoteModules(pid_t process);

    /// A module and its file.
    struct Entry
    {
        RemoteModule module;
        MappedFile file;
    };

    const Entry* find(std::uint64_t address) const;
    /// The tables for an address, read from the module's file.
    bool findTable(std::uint64_t address, formats::UnwindTable& table) const;

   private:
    std::vector<Entry> m_entries;
};

/// Where a module's file can be opened from this process.
std::string remotePath(pid_t process, const std::string& file);

/// Stores the frames of a thread of another process, which is stopped meanwhile. `thread` 0 is its first thread. 0 on
/// failure, with the last error.
std::size_t walkRemote(const WalkRequest& walk, pid_t process, pid_t thread, std::span<StackFrame> frames);

}  // namespace Oxa_1_1::platform
