#include "base/platform/stack/symbols.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <mutex>
#include <set>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/formats/demangle.h"
#include "base/formats/elf_file.h"
#include "base/platform/linux/files/mapped_file.h"
#include "base/platform/linux/stack/remote_process.h"
#include "base/platform/linux/stack/source_lines.h"
#include "base/platform/linux/stack/walk_stack.h"
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

constexpr std::uint32_t ACCESS_DENIED = 5;
constexpr std::uint32_t INVALID_PARAMETER = 87;
constexpr std::uint32_t MODULE_NOT_FOUND = 126;

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

/// The addresses that the segments of a module take.
void readRange(const dl_phdr_info& info, ModuleInfo& module)
{
    std::uint64_t begin = UINT64_MAX;
    std::uint64_t end = 0;
    for (const ElfW(Phdr) & segment : std::span(info.dlpi_phdr, info.dlpi_phnum))
    {
        if (segment.p_type != PT_LOAD) continue;
        begin = std::min<std::uint64_t>(begin, segment.p_vaddr);
        end = std::max<std::uint64_t>(end, segment.p_vaddr + segment.p_memsz);
    }
    if (end <= begin) return;
    module.base = info.dlpi_addr + begin;
    module.size = static_cast<std::uint32_t>(end - begin);
}

std::vector<ModuleInfo> listModules()
{
    std::vector<ModuleInfo> modules;
    const auto add = [](dl_phdr_info* info, std::size_t, void* list)
    {
        ModuleInfo module;
        module.file = moduleFile(info->dlpi_name);
        module.name = moduleName(module.file);
        readRange(*info, module);
        static_cast<std::vector<ModuleInfo>*>(list)->push_back(std::move(module));
        return 0;
    };
    ::dl_iterate_phdr(add, &modules);
    return modules;
}

void readPlainNames(SymbolInfo& info)
{
    if (info.name.empty()) return;
    info.fullName = formats::demangle(info.name);
    info.plainName = formats::nameAlone(info.fullName);
}

using ModuleKey = std::pair<std::uint64_t, std::string>;

ModuleKey keyOf(const ModuleInfo& module) { return {module.base, module.file}; }

/// What is known of a module of another process, but for its version.
ModuleInfo describe(const RemoteModule& from)
{
    ModuleInfo module;
    module.file = from.file;
    module.name = moduleName(from.file);
    module.base = from.begin;
    module.size = static_cast<std::uint32_t>(from.end - from.begin);
    return module;
}

/// The symbols of this process.
class OwnSession : public SymbolSession
{
   public:
    explicit OwnSession(const char* searchPath) : m_searchPath(searchPath == nullptr ? "" : searchPath) {}

    std::string searchPath() const override { return m_searchPath; }
    std::uint32_t options() const override { return LOAD_LINES; }

    std::uint64_t moduleGeneration() const override
    {
        std::uint64_t generation = 0;
        const auto read = [](dl_phdr_info* info, std::size_t, void* result)
        {
            *static_cast<std::uint64_t*>(result) = info->dlpi_adds + info->dlpi_subs;
            return 1;
        };
        ::dl_iterate_phdr(read, &generation);
        return generation;
    }

    std::vector<ModuleInfo> loadModules(bool withVersions) override
    {
        std::map<ModuleKey, ModuleInfo> present;
        std::vector<ModuleInfo> added;
        const std::lock_guard lock(m_mutex);
        for (ModuleInfo& module : listModules())
        {
            const auto known = m_modules.find(keyOf(module));
            if (known != m_modules.end())
            {
                present.insert(m_modules.extract(known));
                continue;
            }
            readSymbolType(module, module.file);
            if (withVersions) module.fileVersion = versionOfFile(module.file);
            added.push_back(module);
            present.emplace(keyOf(module), std::move(module));
        }
        m_modules = std::move(present);
        return added;
    }

    SymbolInfo find(std::uint64_t address, const SymbolParts& parts) const override
    {
        SymbolInfo info;
        if (parts.names || parts.lines) readSource(address, parts, info);
        Dl_info found{};
        if (::dladdr(reinterpret_cast<void*>(address), &found) == 0) return info;
        if (parts.names && info.name.empty() && found.dli_sname != nullptr)
        {
            info.name = found.dli_sname;
            info.offset = address - reinterpret_cast<std::uintptr_t>(found.dli_saddr);
        }
        if (parts.names) readPlainNames(info);
        if (parts.modules) readModule(found, info.module);
        return info;
    }

    std::size_t walk(WalkRequest walk, std::span<StackFrame> frames) const override
    {
        walk.process = nullptr;
        return walkStack(walk, frames);
    }

   private:
    static void readSource(std::uint64_t address, const SymbolParts& parts, SymbolInfo& info)
    {
        SourcePlace place = findSource(address);
        if (parts.names)
        {
            info.name = std::move(place.function);
            info.offset = place.functionOffset;
        }
        if (parts.lines)
        {
            info.file = std::move(place.file);
            info.line = place.line;
        }
    }

    void readModule(const Dl_info& found, ModuleInfo& module) const
    {
        // The loader knows the program by what it was called as.
        link_map* map = nullptr;
        Dl_info again{};
        const bool isKnown = ::dladdr1(found.dli_fbase, &again, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) != 0;
        module.file = moduleFile(isKnown && map != nullptr ? map->l_name : found.dli_fname);
        module.base = reinterpret_cast<std::uintptr_t>(found.dli_fbase);
        const std::lock_guard lock(m_mutex);
        const auto loaded = m_modules.find(keyOf(module));
        if (loaded != m_modules.end())
            module = loaded->second;
        else
            module.name = moduleName(module.file);
    }

    std::string m_searchPath;
    mutable std::mutex m_mutex;
    std::map<ModuleKey, ModuleInfo> m_modules;
};

/// The symbols of another process, from the files of its modules. Lines are known for modules that this process has
/// loaded, too.
class RemoteSession : public SymbolSession
{
   public:
    RemoteSession(pid_t process, const char* searchPath) : m_process(process), m_own(searchPath) {}

    std::string searchPath() const override { return m_own.searchPath(); }
    std::uint32_t options() const override { return m_own.options(); }

    std::uint64_t moduleGeneration() const override
    {
        std::uint64_t digest = m_own.moduleGeneration();
        for (const RemoteModule& module : listRemoteModules(m_process))
            digest = (digest ^ module.begin ^ module.end) * 0x9E3779B97F4A7C15U;
        return digest;
    }

    std::vector<ModuleInfo> loadModules(bool withVersions) override
    {
        std::vector<ModuleInfo> added;
        std::set<ModuleKey> present;
        const std::lock_guard lock(m_mutex);
        for (const RemoteModule& remote : listRemoteModules(m_process))
        {
            ModuleInfo module = describe(remote);
            present.insert(keyOf(module));
            if (m_known.contains(keyOf(module))) continue;
            const std::string path = remotePath(m_process, module.file);
            readSymbolType(module, path);
            if (!module.symbolFile.starts_with("/usr/lib/debug/") && !module.symbolFile.empty())
                module.symbolFile = module.file;
            if (withVersions) module.fileVersion = versionOfFile(path);
            added.push_back(std::move(module));
        }
        m_known = std::move(present);
        return added;
    }

    SymbolInfo find(std::uint64_t address, const SymbolParts& parts) const override
    {
        SymbolInfo info;
        const RemoteModules modules(m_process);
        const RemoteModules::Entry* const entry = modules.find(address);
        if (entry == nullptr) return info;
        const std::uint64_t place = address - entry->module.begin;
        if (const std::uint64_t own = ownBase(entry->module.file); own != 0)
            info = m_own.find(own + place, {parts.names, parts.lines, false});
        if (parts.names && info.name.empty())
        {
            const formats::ElfFile elf(entry->file.bytes());
            std::uint64_t begin = 0;
            const std::uint64_t meant = place + elf.firstAddress();
            info.name = elf.functionAt(meant, begin);
            info.offset = info.name.empty() ? 0 : meant - begin;
            readPlainNames(info);
        }
        if (parts.modules)
        {
            info.module = describe(entry->module);
            readSymbolType(info.module, remotePath(m_process, entry->module.file));
        }
        return info;
    }

    std::size_t walk(WalkRequest walk, std::span<StackFrame> frames) const override
    {
        walk.process = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(m_process));
        return walkStack(walk, frames);
    }

   private:
    /// Where this process has loaded the file; 0 when it has not.
    static std::uint64_t ownBase(const std::string& file)
    {
        for (const RemoteModule& module : listRemoteModules(::getpid()))
            if (module.file == file && file.starts_with('/')) return module.begin;
        return 0;
    }

    pid_t m_process;
    OwnSession m_own;
    std::mutex m_mutex;
    std::set<ModuleKey> m_known;
};

/// The handle says which process is meant; without one, the number does.
pid_t processOf(std::uint32_t processId, HANDLE handle)
{
    const bool isNamed = reinterpret_cast<std::intptr_t>(handle) > 0;
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
