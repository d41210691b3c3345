#include "base/platform/windows/stack/process_modules.h"

#include <array>

#include "base/platform/windows/modules/library.h"
// The system's header must come first.
#include <psapi.h>
#include <tlhelp32.h>

namespace Oxa_1_1::platform
{

namespace
{

/// Releases a snapshot.
class Snapshot
{
   public:
    explicit Snapshot(HANDLE handle) : m_handle(handle) {}
    ~Snapshot()
    {
        if (isValid()) CloseHandle(m_handle);
    }
    Snapshot(const Snapshot&) = delete;
    Snapshot& operator=(const Snapshot&) = delete;

    bool isValid() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE handle() const { return m_handle; }

   private:
    HANDLE m_handle;
};

std::vector<ModuleInfo> listByToolHelp(std::uint32_t processId)
{
    const Library library("tlhelp32.dll");
    decltype(&::CreateToolhelp32Snapshot) createSnapshot = nullptr;
    decltype(&::Module32First) first = nullptr;
    decltype(&::Module32Next) next = nullptr;
    if (!library.find("CreateToolhelp32Snapshot", createSnapshot) || !library.find("Module32First", first) ||
        !library.find("Module32Next", next))
        return {};
    const Snapshot snapshot(createSnapshot(TH32CS_SNAPMODULE, processId));
    if (!snapshot.isValid()) return {};

    std::vector<ModuleInfo> modules;
    MODULEENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL isThere = first(snapshot.handle(), &entry); isThere != 0; isThere = next(snapshot.handle(), &entry))
    {
        ModuleInfo module;
        module.file = entry.szExePath;
        module.name = entry.szModule;
        module.base = reinterpret_cast<std::uintptr_t>(entry.modBaseAddr);
        module.size = entry.modBaseSize;
        modules.push_back(std::move(module));
    }
    return modules;
}

/// The process-status library; it stays loaded.
struct ProcessStatus
{
    ProcessStatus() : library("psapi.dll")
    {
        isComplete = library.find("EnumProcessModules", enumProcessModules) &&
                     library.find("GetModuleFileNameExA", getModuleFileNameExA) &&
                     library.find("GetModuleBaseNameA", getModuleBaseNameA) &&
                     library.find("GetModuleInformation", getModuleInformation);
    }

    std::vector<HMODULE> handles(HANDLE process) const
    {
        std::vector<HMODULE> handles(256);
        for (;;)
        {
            const auto size = static_cast<DWORD>(handles.size() * sizeof(HMODULE));
            DWORD needed = 0;
            if (!isComplete || enumProcessModules(process, handles.data(), size, &needed) == 0) return {};
            handles.resize(needed / sizeof(HMODULE));
            if (needed <= size) return handles;
        }
    }

    Library library;
    decltype(&::EnumProcessModules) enumProcessModules = nullptr;
    decltype(&::GetModuleFileNameExA) getModuleFileNameExA = nullptr;
    decltype(&::GetModuleBaseNameA) getModuleBaseNameA = nullptr;
    decltype(&::GetModuleInformation) getModuleInformation = nullptr;
    bool isComplete = false;
};

const ProcessStatus& processStatus()
{
    static const ProcessStatus STATUS;
    return STATUS;
}

std::vector<ModuleInfo> listByProcessStatus(HANDLE process)
{
    const ProcessStatus& status = processStatus();
    std::vector<ModuleInfo> modules;
    for (const HMODULE handle : status.handles(process))
    {
        std::array<char, 4096> text{};
        constexpr auto SIZE = static_cast<DWORD>(text.size() - 1);
        MODULEINFO information{};
        ModuleInfo module;
        if (status.getModuleFileNameExA(process, handle, text.data(), SIZE) != 0) module.file = text.data();
        text = {};
        if (status.getModuleBaseNameA(process, handle, text.data(), SIZE) != 0) module.name = text.data();
        if (status.getModuleInformation(process, handle, &information, sizeof information) == 0) continue;
        module.base = reinterpret_cast<std::uintptr_t>(information.lpBaseOfDll);
        module.size = information.SizeOfImage;
        modules.push_back(std::move(module));
    }
    return modules;
}

}  // namespace

std::vector<ModuleInfo> listModules(std::uint32_t processId, HANDLE process)
{
    std::vector<ModuleInfo> modules = listByToolHelp(processId);
    return modules.empty() ? listByProcessStatus(process) : modules;
}

std::uint64_t digestOfModules(HANDLE process)
{
    std::uint64_t digest = 0;
    for (const HMODULE handle : processStatus().handles(process))
        digest = (digest ^ reinterpret_cast<std::uintptr_t>(handle)) * 0x9E3779B97F4A7C15U;
    return digest;
}

std::uint64_t versionOfFile(const std::string& file)
{
    DWORD unused = 0;
    const DWORD size = GetFileVersionInfoSizeA(file.c_str(), &unused);
    std::vector<char> data(size);
    VS_FIXEDFILEINFO* version = nullptr;
    UINT length = 0;
    if (size == 0 || GetFileVersionInfoA(file.c_str(), 0, size, data.data()) == 0 ||
        VerQueryValueA(data.data(), "\\", reinterpret_cast<void**>(&version), &length) == 0 || length < sizeof *version)
        return 0;
    return static_cast<std::uint64_t>(version->dwFileVersionMS) << 32 | version->dwFileVersionLS;
}

}  // namespace Oxa_1_1::platform
