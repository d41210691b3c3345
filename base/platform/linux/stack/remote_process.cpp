#include "base/platform/linux/stack/remote_process.h"

#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <sstream>
#include <utility>

#include "base/platform/linux/stack/walk_stack.h"
#include "base/platform/linux/system/error_code.h"
#include "base/platform/stack/detail/frame_list.h"
#include "base/platform/system/error_text.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform
{

namespace
{

/// Holds a thread of another process still.
class TracedThread
{
   public:
    explicit TracedThread(pid_t thread) : m_thread(thread)
    {
        m_isAttached = ::ptrace(PTRACE_SEIZE, thread, nullptr, nullptr) == 0;
        if (!m_isAttached || ::ptrace(PTRACE_INTERRUPT, thread, nullptr, nullptr) != 0 || !awaitStop())
            setLastError(errorCodeOfErrno(errno));
    }
    ~TracedThread()
    {
        if (m_isAttached) ::ptrace(PTRACE_DETACH, m_thread, nullptr, m_pendingSignal);
    }
    TracedThread(const TracedThread&) = delete;
    TracedThread& operator=(const TracedThread&) = delete;

    bool read(formats::Registers& registers) const
    {
        user_regs_struct from{};
        if (!m_isStopped) return false;
        if (::ptrace(PTRACE_GETREGS, m_thread, nullptr, &from) != 0)
        {
            setLastError(errorCodeOfErrno(errno));
            return false;
        }
        registers = {from.rax, from.rdx, from.rcx, from.rbx, from.rsi, from.rdi, from.rbp, from.rsp, from.r8,
                     from.r9,  from.r10, from.r11, from.r12, from.r13, from.r14, from.r15, from.rip};
        return true;
    }

   private:
    bool awaitStop()
    {
        int status = 0;
        pid_t found = 0;
        do found = ::waitpid(m_thread, &status, __WALL);
        while (found < 0 && errno == EINTR);
        m_isStopped = found == m_thread && WIFSTOPPED(status);
        // A signal that was on its way is handed on.
        if (m_isStopped && status >> 16 == 0 && WSTOPSIG(status) != SIGTRAP) m_pendingSignal = WSTOPSIG(status);
        if (found == m_thread && !m_isStopped) errno = ESRCH;
        return m_isStopped;
    }

    pid_t m_thread;
    long m_pendingSignal = 0;
    bool m_isAttached = false;
    bool m_isStopped = false;
};

class RemoteSource : public formats::UnwindSource
{
   public:
    RemoteSource(const WalkRequest& walk, const RemoteModules& modules) : m_walk(walk), m_modules(modules) {}

    bool read(std::uint64_t address, std::uint64_t& value) const override { return readStack(m_walk, address, value); }

    bool findTable(std::uint64_t address, formats::UnwindTable& table) const override
    {
        return m_modules.findTable(address, table);
    }

   private:
    const WalkRequest& m_walk;
    const RemoteModules& m_modules;
};

}  // namespace

std::string remotePath(pid_t process, const std::string& file)
{
    return "/proc/" + std::to_string(process) + "/root" + file;
}

std::vector<RemoteModule> listRemoteModules(pid_t process)
{
    // Lines are "begin-end rights offset device inode   file".
    struct Mapped
    {
        RemoteModule module;
        std::uint64_t lastOffset = 0;
        bool isCode = false;
    };
    std::vector<Mapped> files;
    std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
    for (std::string line; std::getline(maps, line);)
    {
        std::istringstream fields(line);
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
        char dash = 0;
        std::string rights;
        std::string skipped;
        std::string file;
        std::uint64_t offset = 0;
        fields >> std::hex >> begin >> dash >> end >> rights >> offset >> skipped >> skipped >> std::ws;
        std::getline(fields, file);
        if (!file.starts_with('/') && file != "[vdso]") continue;
        // A file that is also mapped as data, beside its module, begins anew.
        const bool isOther = files.empty() || files.back().module.file != file ||
                             (offset == 0 && (!files.back().isCode || files.back().lastOffset > 0));
        if (isOther) files.push_back({{file, begin, end}});
        files.back().module.end = end;
        files.back().lastOffset = offset;
        files.back().isCode |= rights.find('x') != std::string::npos;
    }
    std::vector<RemoteModule> modules;
    for (Mapped& mapped : files)
        if (mapped.isCode) modules.push_back(std::move(mapped.module));
    return modules;
}

RemoteModules::RemoteModules(pid_t process)
{
    for (RemoteModule& module : listRemoteModules(process))
    {
        MappedFile file(remotePath(process, module.file));
        m_entries.push_back({std::move(module), std::move(file)});
    }
}

const RemoteModules::Entry* RemoteModules::find(std::uint64_t address) const
{
    const auto found =
        std::find_if(m_entries.begin(), m_entries.end(),
                     [&](const Entry& entry) { return address >= entry.module.begin && address < entry.module.end; });
    return found == m_entries.end() ? nullptr : &*found;
}

bool RemoteModules::findTable(std::uint64_t address, formats::UnwindTable& table) const
{
    const Entry* const entry = find(address);
    if (entry == nullptr) return false;
    const formats::ElfFile elf(entry->file.bytes());
    std::uint64_t offset = 0;
    std::uint64_t meant = 0;
    if (!elf.findUnwindIndex(offset, meant)) return false;
    table.begin = entry->module.begin;
    table.end = entry->module.end;
    table.data = entry->file.bytes();
    table.index = table.data.data() + offset;
    table.shift = entry->module.begin - elf.firstAddress() + meant - reinterpret_cast<std::uintptr_t>(table.index);
    return formats::checkUnwindTable(table);
}

std::size_t walkRemote(const WalkRequest& walk, pid_t process, pid_t thread, std::span<StackFrame> frames)
{
    const RemoteModules modules(process);
    const TracedThread traced(thread == 0 ? process : thread);
    formats::Registers registers{};
    if (!traced.read(registers)) return 0;
    if (walk.context != nullptr) registers = registersOf(*walk.context);
    detail::FrameList list(frames, nullptr);
    formats::walkFrames(RemoteSource(walk, modules), registers, [&](auto... frame) { return list.add(frame...); });
    return list.count();
}

}  // namespace Oxa_1_1::platform
