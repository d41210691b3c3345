#include "base/platform/stack/symbols.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <iterator>
#include <map>
#include <mutex>
#include <string_view>

#include "base/formats/demangle.h"
#include "base/platform/stack/detail/frame_list.h"
#include "base/platform/stack/detail/symbol_files.h"
#include "base/platform/windows/stack/debug_help.h"
#include "base/platform/windows/stack/process_modules.h"
#include "base/platform/windows/stack/suspended_thread.h"

namespace Oxa_1_1::platform
{

namespace
{

/// The debug-help library serves one thread at a time.
std::mutex debugHelpMutex;

/// The walk under way, for the reader function, which is handed nothing of ours. Guarded by the mutex.
const WalkRequest* walkUnderWay = nullptr;

BOOL CALLBACK readForWalk(HANDLE process, DWORD64 address, void* buffer, DWORD size, DWORD* read)
{
    if (walkUnderWay->read != nullptr)
        return walkUnderWay->read(process, address, buffer, size, read, walkUnderWay->userData);
    std::uint32_t count = 0;
    const bool isRead = readProcessMemory(process, address, buffer, size, count);
    *read = count;
    return isRead ? TRUE : FALSE;
}

/// A handle of its own for each session, because the library knows its sessions by their handles. Without a handle, the
/// number says which process is meant.
class ProcessHandle
{
   public:
    ProcessHandle(std::uint32_t processId, HANDLE process)
    {
        const HANDLE self = GetCurrentProcess();
        if (process == nullptr && processId != 0 && processId != GetCurrentProcessId())
        {
            m_handle = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId);
            return;
        }
        DuplicateHandle(self, process == nullptr ? self : process, self, &m_handle, 0, FALSE, DUPLICATE_SAME_ACCESS);
    }
    ProcessHandle(ProcessHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    ProcessHandle(const ProcessHandle&) = delete;
    ProcessHandle& operator=(const ProcessHandle&) = delete;
    ProcessHandle& operator=(ProcessHandle&&) = delete;
    ~ProcessHandle()
    {
        if (m_handle != nullptr) CloseHandle(m_handle);
    }

    HANDLE get() const { return m_handle; }

   private:
    HANDLE m_handle = nullptr;
};

class Session : public SymbolSession
{
   public:
    Session(std::uint32_t processId, HANDLE process) : m_processId(processId), m_process(processId, process) {}

    ~Session() override
    {
        const std::lock_guard lock(debugHelpMutex);
        if (m_isInitialized) m_help.symCleanup(m_process.get());
    }

    bool start(const char* searchPath)
    {
        const std::lock_guard lock(debugHelpMutex);
        if (!m_help.isComplete() || m_process.get() == nullptr) return false;
        m_isInitialized = m_help.symInitialize(m_process.get(), searchPath, FALSE) != 0;
        if (m_isInitialized) m_options = m_help.symSetOptions(m_help.symGetOptions() | OPTIONS);
        return m_isInitialized;
    }

    std::string searchPath() const override
    {
        const std::lock_guard lock(debugHelpMutex);
        std::array<char, 8192> path{};
        const BOOL isKnown = m_help.symGetSearchPath(m_process.get(), path.data(), static_cast<DWORD>(path.size() - 1));
        return isKnown != 0 ? path.data() : "";
    }

    std::uint32_t options() const override { return m_options; }

    std::uint64_t moduleGeneration() const override { return digestOfModules(m_process.get()); }

    std::vector<ModuleInfo> loadModules(bool withVersions) override
    {
        std::map<std::uint64_t, ModuleInfo> present;
        std::vector<ModuleInfo> added;
        const std::lock_guard lock(debugHelpMutex);
        for (ModuleInfo& module : listModules(m_processId, m_process.get()))
        {
            const auto known = m_modules.find(module.base);
            module.stamp = stampOf(module);
            if (known != m_modules.end() && known->second.stamp == module.stamp)
            {
                present.insert(m_modules.extract(known));
                continue;
            }
            load(module);
            if (withVersions) module.fileVersion = versionOfFile(module.file);
            added.push_back(module);
            present.emplace(module.base, std::move(module));
        }
        m_modules = std::move(present);
        m_files.keepOnly(
            [this](std::uint64_t stamp)
            {
                return std::any_of(m_modules.begin(), m_modules.end(),
                                   [stamp](const auto& module) { return module.second.stamp == stamp; });
            });
        return added;
    }

    std::vector<ModuleStamp> moduleStamps() const override
    {
        const std::lock_guard lock(debugHelpMutex);
        std::vector<ModuleStamp> stamps;
        for (const auto& [base, module] : m_modules) stamps.push_back({base, base + module.size, module.stamp});
        return stamps;
    }

    SymbolInfo find(std::uint64_t address, const SymbolParts& parts) const override
    {
        const std::lock_guard lock(debugHelpMutex);
        SymbolInfo info;
        if (parts.names) readName(address, info);
        if (parts.lines) readLine(address, info);
        const auto behind = m_modules.upper_bound(address);
        if (behind == m_modules.begin() || address - std::prev(behind)->first >= std::prev(behind)->second.size)
            return info;
        ModuleInfo module = std::prev(behind)->second;
        readSymbolType(module);
        if (parts.names || parts.lines) readFile(address, parts, module, info);
        if (parts.modules) info.module = std::move(module);
        return info;
    }

    std::size_t walk(WalkRequest walk, std::span<StackFrame> frames) const override
    {
        const bool isCaller = walk.thread == nullptr || GetThreadId(walk.thread) == GetCurrentThreadId();
        if (!isCaller) return walkOther(walk, frames);
        if (walk.context != nullptr) return walkFrom(walk, *walk.context, {frames, nullptr});
        CONTEXT context;
        RtlCaptureContext(&context);
        return walkFrom(walk, context, {frames, walk.innermost});
    }

   private:
    /// Symbols of a module are read when the first of its addresses is looked for.
    static constexpr DWORD OPTIONS = SYMOPT_DEFERRED_LOADS | SYMOPT_LOAD_LINES | SYMOPT_FAIL_CRITICAL_ERRORS;

    void load(ModuleInfo& module) const
    {
        SetLastError(0);
        const DWORD64 base = m_help.symLoadModule64(m_process.get(), nullptr, module.file.c_str(), module.name.c_str(),
                                                    module.base, module.size);
        if (base == 0) module.result = GetLastError();
        readSymbolType(module);
    }

    void readSymbolType(ModuleInfo& module) const
    {
        IMAGEHLP_MODULE64 information{};
        information.SizeOfStruct = sizeof information;
        BOOL isKnown = m_help.symGetModuleInfo64(m_process.get(), module.base, &information);
        if (isKnown == 0)
        {
            // Older libraries know a shorter structure.
            information.SizeOfStruct = offsetof(IMAGEHLP_MODULE64, LoadedPdbName);
            isKnown = m_help.symGetModuleInfo64(m_process.get(), module.base, &information);
        }
        if (isKnown == 0)
        {
            module.symbolType = UNKNOWN_TYPE;
            return;
        }
        module.symbolType = static_cast<std::uint32_t>(information.SymType);
        module.symbolFile = information.LoadedPdbName[0] != 0 ? information.LoadedPdbName : information.LoadedImageName;
    }

    /// What the module was built at stands in its head.
    std::uint64_t stampOf(const ModuleInfo& module) const
    {
        std::array<char, 1024> head{};
        std::uint32_t read = 0;
        readProcessMemory(m_process.get(), module.base, head.data(), static_cast<std::uint32_t>(head.size()), read);
        const std::hash<std::string_view> hash;
        return module.base ^ hash(module.file) ^ hash({head.data(), head.size()}) * 0x9E3779B97F4A7C15U;
    }

    /// What the compiler of this library writes into modules is read from their files: the debug-help library knows
    /// little of it.
    void readFile(std::uint64_t address, const SymbolParts& parts, ModuleInfo& module, SymbolInfo& info) const
    {
        detail::SymbolFiles::Found found = m_files.find(module.file, module.stamp, address - module.base);
        if (!found.hasDebugInformation && !found.hasCoffSymbols) return;
        const bool isFromElsewhere = module.symbolType == SymPdb || module.symbolType == SymCv;
        if (isFromElsewhere && !found.hasDebugInformation) return;
        module.symbolType = SymCoff;
        takeFound(std::move(found), parts, info);
    }

    std::string undecorated(const char* name, DWORD flags) const
    {
        std::array<char, 4096> text{};
        const DWORD length = m_help.unDecorateSymbolName(name, text.data(), static_cast<DWORD>(text.size() - 1), flags);
        return length == 0 ? name : text.data();
    }

    void readName(std::uint64_t address, SymbolInfo& info) const
    {
        constexpr std::size_t LONGEST_NAME = 4096;
        union
        {
            IMAGEHLP_SYMBOL64 symbol;
            std::array<char, sizeof(IMAGEHLP_SYMBOL64) + LONGEST_NAME> room;
        } buffer;
        buffer.room = {};
        buffer.symbol.SizeOfStruct = sizeof(IMAGEHLP_SYMBOL64);
        buffer.symbol.MaxNameLength = LONGEST_NAME;
        DWORD64 offset = 0;
        if (m_help.symGetSymFromAddr64(m_process.get(), address, &offset, &buffer.symbol) == 0) return;
        const char* const name = buffer.symbol.Name;
        info.name = name;
        info.offset = offset;
        if (info.name.starts_with("_Z"))
        {
            info.fullName = formats::demangle(info.name);
            info.plainName = formats::nameAlone(info.fullName);
            return;
        }
        info.plainName = undecorated(name, UNDNAME_NAME_ONLY);
        info.fullName = undecorated(name, UNDNAME_COMPLETE);
    }

    void readLine(std::uint64_t address, SymbolInfo& info) const
    {
        IMAGEHLP_LINE64 line{};
        line.SizeOfStruct = sizeof line;
        DWORD offset = 0;
        if (m_help.symGetLineFromAddr64(m_process.get(), address, &offset, &line) == 0) return;
        if (line.FileName != nullptr) info.file = line.FileName;
        info.line = line.LineNumber;
        info.lineOffset = offset;
    }

    std::size_t walkOther(const WalkRequest& walk, std::span<StackFrame> frames) const
    {
        // Before the thread is stopped, because it may hold what is waited for.
        const std::lock_guard lock(debugHelpMutex);
        const SuspendedThread suspended(walk.thread);
        if (!suspended.isSuspended()) return 0;
        CONTEXT context{};
        context.ContextFlags = CONTEXT_FULL;
        if (walk.context != nullptr)
            context = *walk.context;
        else if (GetThreadContext(walk.thread, &context) == 0)
            return 0;
        return walkLocked(walk, context, {frames, nullptr});
    }

    std::size_t walkFrom(const WalkRequest& walk, const CONTEXT& context, detail::FrameList list) const
    {
        const std::lock_guard lock(debugHelpMutex);
        return walkLocked(walk, context, list);
    }

    std::size_t walkLocked(const WalkRequest& walk, CONTEXT context, detail::FrameList list) const
    {
        walkUnderWay = &walk;
        STACKFRAME64 frame{};
        frame.AddrPC = {context.Rip, 0, AddrModeFlat};
        frame.AddrFrame = {context.Rbp, 0, AddrModeFlat};
        frame.AddrStack = {context.Rsp, 0, AddrModeFlat};
        const HANDLE thread = walk.thread == nullptr ? GetCurrentThread() : walk.thread;
        for (bool isAfterCall = false;; isAfterCall = true)
        {
            if (m_help.stackWalk64(IMAGE_FILE_MACHINE_AMD64, m_process.get(), thread, &frame, &context, readForWalk,
                                   m_help.symFunctionTableAccess64, m_help.symGetModuleBase64, nullptr) == 0)
                break;
            if (frame.AddrPC.Offset == 0 || !list.add(frame.AddrPC.Offset, frame.AddrStack.Offset, isAfterCall)) break;
        }
        walkUnderWay = nullptr;
        return list.count();
    }

    static constexpr std::uint32_t UNKNOWN_TYPE = 0xFFFFFFFF;

    std::uint32_t m_processId;
    ProcessHandle m_process;
    DebugHelp m_help;
    std::uint32_t m_options = 0;
    bool m_isInitialized = false;
    std::map<std::uint64_t, ModuleInfo> m_modules;
    mutable detail::SymbolFiles m_files{nullptr};
};

}  // namespace

std::unique_ptr<SymbolSession> SymbolSession::open(std::uint32_t processId, HANDLE process, const char* searchPath)
{
    auto session = std::make_unique<Session>(processId, process);
    if (session->start(searchPath)) return session;
    const DWORD error = GetLastError();
    session.reset();
    SetLastError(error);
    return nullptr;
}

const char* symbolTypeText(std::uint32_t type) noexcept
{
    switch (type)
    {
        case SymNone:
            return "-nosymbols-";
        case SymCoff:
            return "COFF";
        case SymCv:
            return "CV";
        case SymPdb:
            return "PDB";
        case SymExport:
            return "-exported-";
        case SymDeferred:
            return "-deferred-";
        case SymSym:
            return "SYM";
        case SymDia:
            return "DIA";
        case SymVirtual:
            return "Virtual";
        default:
            return "-unknown-";
    }
}

}  // namespace Oxa_1_1::platform
