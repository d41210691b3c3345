#include "base/platform/stack/symbols.h"

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/formats/elf_file.h"
#include "base/platform/linux/files/mapped_file.h"
#include "base/platform/linux/stack/loaded_modules.h"
#include "base/platform/linux/stack/remote_process.h"
#include "base/platform/linux/stack/walk_stack.h"
#include "base/platform/stack/detail/symbol_files.h"
#include "base/platform/system/last_error.h"
#include "base/platform/system/system_info.h"

namespace Oxa_1_1::platform
{

namespace
{

/// The kinds of symbols of this system's modules, numbered beside those of others.
enum SymbolType : std::uint32_t
{
    None,
    Exported,
    Table,
    DebugInformation,
    Virtual,
    Unknown
};

/// The reader gives lines wherever it can.
constexpr std::uint32_t LOAD_LINES = 0x10;

std::string debugFileOf(const formats::ElfFile& file)
{
    const std::string id = file.buildId();
    if (id.size() < 3) return {};
    std::string name = "/usr/lib/debug/.build-id/" + id.substr(0, 2) + "/" + id.substr(2) + ".debug";
    return ::access(name.c_str(), R_OK) == 0 ? name : std::string();
}

void readSymbolType(ModuleInfo& module, const std::string& path)
{
    const MappedFile mapped(path);
    const formats::ElfFile file(mapped.bytes());
    if (!file.isValid())
    {
        // The system's own code has a name but no file.
        const bool isVirtual = !module.file.starts_with('/');
        module.symbolType = isVirtual ? Virtual : Unknown;
        module.result = isVirtual ? 0 : MODULE_NOT_FOUND;
        return;
    }
    module.symbolFile = module.file;
    if (file.hasSection(".debug_info"))
    {
        module.symbolType = DebugInformation;
    }
    else if (std::string debugFile = debugFileOf(file); !debugFile.empty())
    {
        module.symbolType = DebugInformation;
        module.symbolFile = std::move(debugFile);
    }
    else if (file.hasSection(".symtab"))
    {
        module.symbolType = Table;
    }
    else if (file.hasSection(".dynsym"))
    {
        module.symbolType = Exported;
    }
    else
    {
        module.symbolType = None;
        module.symbolFile.clear();
    }
}

/// Libraries carry their version behind their name: libname.so.1.2.3.
std::uint64_t versionOfFile(const std::string& file)
{
    std::error_code error;
    const std::string real = std::filesystem::canonical(file, error).filename().string();
    const std::size_t at = real.find(".so.");
    if (error || at == std::string::npos) return 0;
    std::uint64_t version = 0;
    const char* rest = real.c_str() + at + 3;
    for (const int shift : {48, 32, 16, 0})
    {
        if (*rest != '.') break;
        char* end = nullptr;
        version |= (std::strtoul(rest + 1, &end, 10) & 0xFFFF) << shift;
        rest = end;
    }
    return version;
}

std::string moduleFile(const char* loaderName)
{
    return loaderName == nullptr || *loaderName == 0 ? programFile() : std::string(loaderName);
}

std::string moduleName(const std::string& file) { return file.substr(file.find_last_of('/') + 1); }

ModuleInfo plainInfo(const LoadedModule& loaded)
{
    ModuleInfo module;
    module.file = moduleFile(loaded.loaderName);
    module.name = moduleName(module.file);
    module.base = loaded.place.begin;
    module.size = static_cast<std::uint32_t>(loaded.place.end - loaded.place.begin);
    module.stamp = loaded.place.stamp;
    return module;
}

/// Where the file of a module of this process is opened.
std::string ownPath(const LoadedModule& module)
{
    return *module.loaderName == 0 ? std::string("/proc/self/exe") : std::string(module.loaderName);
}

std::string separateDebugFile(std::span<const std::uint8_t> bytes)
{
    const formats::ElfFile file(bytes);
    return file.hasSection(".debug_info") ? std::string() : debugFileOf(file);
}

/// The files of this process, which all its sessions share.
detail::SymbolFiles& ownFiles()
{
    // Never destroyed: destructors of static objects may walk the stack, too.
    static auto& files = *new detail::SymbolFiles(separateDebugFile);
    return files;
}

std::vector<ModuleStamp> sorted(std::vector<ModuleStamp> stamps)
{
    std::sort(stamps.begin(), stamps.end(),
              [](const ModuleStamp& a, const ModuleStamp& b) { return a.begin < b.begin; });
    return stamps;
}

/// What is known of a module of another process, but for its version.
ModuleInfo plainInfo(const RemoteModule& from)
{
    ModuleInfo module;
    module.file = from.file;
    module.name = moduleName(from.file);
    module.base = from.begin;
    module.size = static_cast<std::uint32_t>(from.end - from.begin);
    module.stamp = mix(mix(from.begin, from.end), from.file);
    return module;
}

/// The symbols of this process.
class OwnSession : public SymbolSession
{
   public:
    explicit OwnSession(const char* searchPath) : m_searchPath(searchPath == nullptr ? "" : searchPath) {}

    std::string searchPath() const override { return m_searchPath; }
    std::uint32_t options() const override { return LOAD_LINES; }

    std::uint64_t moduleGeneration() const override { return loaderGeneration(); }

    std::vector<ModuleStamp> moduleStamps() const override
    {
        std::vector<ModuleStamp> stamps;
        const std::lock_guard lock(m_mutex);
        m_present.refresh();
        stamps.reserve(m_present.modules().size());
        for (const LoadedModule& module : m_present.modules()) stamps.push_back(module.place);
        return sorted(std::move(stamps));
    }

    std::vector<ModuleInfo> loadModules(bool withVersions) override
    {
        std::vector<ModuleInfo> added;
        const std::lock_guard lock(m_mutex);
        m_present.refresh();
        for (const LoadedModule& loaded : m_present.modules())
        {
            if (m_modules.contains(loaded.place.stamp)) continue;
            ModuleInfo module = plainInfo(loaded);
            readSymbolType(module, ownPath(loaded));
            if (withVersions) module.fileVersion = versionOfFile(module.file);
            added.push_back(module);
            m_modules.emplace(loaded.place.stamp, std::move(module));
        }
        if (m_modules.size() != m_present.modules().size()) forgetOthers();
        return added;
    }

    SymbolInfo find(std::uint64_t address, const SymbolParts& parts) const override
    {
        SymbolInfo info;
        LoadedModule module;
        if (!findModule(address, module)) return info;
        if (parts.names || parts.lines)
            takeFound(ownFiles().find(ownPath(module), module.place.stamp, address - module.place.begin), parts, info);
        // The system's own code has no file.
        Dl_info found{};
        if (parts.names && info.name.empty() && ::dladdr(reinterpret_cast<void*>(address), &found) != 0 &&
            found.dli_sname != nullptr)
        {
            info.name = found.dli_sname;
            info.offset = address - reinterpret_cast<std::uintptr_t>(found.dli_saddr);
            detail::readPlainNames(info);
        }
        if (parts.modules) info.module = moduleInfo(module);
        return info;
    }

    std::size_t walk(WalkRequest walk, std::span<StackFrame> frames) const override
    {
        walk.process = nullptr;
        return walkStack(walk, frames);
    }

   private:
    ModuleInfo moduleInfo(const LoadedModule& module) const
    {
        const std::lock_guard lock(m_mutex);
        const auto known = m_modules.find(module.place.stamp);
        return known == m_modules.end() ? plainInfo(module) : known->second;
    }

    void forgetOthers()
    {
        const auto isPresent = [&](std::uint64_t stamp)
        {
            return std::any_of(m_present.modules().begin(), m_present.modules().end(),
                               [stamp](const LoadedModule& module) { return module.place.stamp == stamp; });
        };
        std::erase_if(m_modules, [&](const auto& module) { return !isPresent(module.first); });
        ownFiles().keepOnly(isPresent);
    }

    std::string m_searchPath;
    mutable std::mutex m_mutex;
    mutable ModuleList m_present;
    /// By their stamps.
    std::map<std::uint64_t, ModuleInfo> m_modules;
};

/// The symbols of another process, from the files of its modules.
class RemoteSession : public SymbolSession
{
   public:
    RemoteSession(pid_t process, const char* searchPath)
        : m_process(process), m_searchPath(searchPath == nullptr ? "" : searchPath), m_files(separateDebugFile)
    {
    }

    std::string searchPath() const override { return m_searchPath; }
    std::uint32_t options() const override { return LOAD_LINES; }

    std::uint64_t moduleGeneration() const override
    {
        std::uint64_t digest = 0;
        for (const RemoteModule& module : listRemoteModules(m_process))
            digest = mix(mix(digest, module.begin), module.end);
        return digest;
    }

    std::vector<ModuleStamp> moduleStamps() const override
    {
        std::vector<ModuleStamp> stamps;
        for (const RemoteModule& module : listRemoteModules(m_process))
            stamps.push_back({module.begin, module.end, plainInfo(module).stamp});
        return sorted(std::move(stamps));
    }

    std::vector<ModuleInfo> loadModules(bool withVersions) override
    {
        std::vector<ModuleInfo> added;
        std::set<std::uint64_t> present;
        const std::lock_guard lock(m_mutex);
        for (const RemoteModule& remote : listRemoteModules(m_process))
        {
            ModuleInfo module = plainInfo(remote);
            present.insert(module.stamp);
            if (m_known.contains(module.stamp)) continue;
            readRemoteType(module);
            if (withVersions) module.fileVersion = versionOfFile(remotePath(m_process, module.file));
            added.push_back(std::move(module));
        }
        m_known = std::move(present);
        m_files.keepOnly([&](std::uint64_t stamp) { return m_known.contains(stamp); });
        return added;
    }

    SymbolInfo find(std::uint64_t address, const SymbolParts& parts) const override
    {
        SymbolInfo info;
        for (const RemoteModule& remote : listRemoteModules(m_process))
        {
            if (address < remote.begin || address >= remote.end) continue;
            ModuleInfo module = plainInfo(remote);
            if (parts.names || parts.lines)
                takeFound(m_files.find(remotePath(m_process, remote.file), module.stamp, address - remote.begin), parts,
                          info);
            if (!parts.modules) break;
            readRemoteType(module);
            info.module = std::move(module);
            break;
        }
        return info;
    }

    std::size_t walk(WalkRequest walk, std::span<StackFrame> frames) const override
    {
        walk.process = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(m_process));
        return walkStack(walk, frames);
    }

   private:
    void readRemoteType(ModuleInfo& module) const
    {
        readSymbolType(module, remotePath(m_process, module.file));
        if (!module.symbolFile.starts_with("/usr/lib/debug/") && !module.symbolFile.empty())
            module.symbolFile = module.file;
    }

    pid_t m_process;
    std::string m_searchPath;
    mutable detail::SymbolFiles m_files;
    std::mutex m_mutex;
    std::set<std::uint64_t> m_known;
};

/// The handle says which process is meant; without one, the number does.
pid_t processOf(std::uint32_t processId, HANDLE handle)
{
    const bool isNamed = reinterpret_cast<std::intptr_t>(handle) != 0;
    return isNamed || processId == 0 ? platform::processOf(handle) : static_cast<pid_t>(processId);
}

}  // namespace

std::unique_ptr<SymbolSession> SymbolSession::open(std::uint32_t processId, HANDLE process, const char* searchPath)
{
    const pid_t number = processOf(processId, process);
    if (number == ::getpid()) return std::make_unique<OwnSession>(searchPath);
    // Of a process that is gone, or that may not be seen, no symbol can be read.
    if (!listRemoteModules(number).empty()) return std::make_unique<RemoteSession>(number, searchPath);
    const bool isGone = ::kill(number, 0) != 0 && errno == ESRCH;
    setLastError(isGone ? INVALID_PARAMETER : ACCESS_DENIED);
    return nullptr;
}

const char* symbolTypeText(std::uint32_t type) noexcept
{
    switch (type)
    {
        case None:
            return "-nosymbols-";
        case Exported:
            return "-exported-";
        case Table:
            return "ELF";
        case DebugInformation:
            return "DWARF";
        case Virtual:
            return "Virtual";
        default:
            return "-unknown-";
    }
}

}  // namespace Oxa_1_1::platform
