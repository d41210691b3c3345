#include "base/platform/system/system_info.h"

#include "base/platform/system/code_page.h"
#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

namespace
{

/// The text that `fill` writes into a buffer of the given size. `fill` returns the length of the text, or the size that
/// it needs; 0 for failure.
template <class Fill>
std::string filled(Fill fill)
{
    std::string text(MAX_PATH, '\0');
    for (;;)
    {
        const auto size = static_cast<std::size_t>(fill(text.data(), static_cast<DWORD>(text.size())));
        if (size < text.size())
        {
            text.resize(size);
            return text;
        }
        text.resize(size == text.size() ? 2 * size : size);
    }
}

}  // namespace

Text decodeNarrow(const std::string& bytes) { return bytes.empty() ? Text() : decodeCodePage(CP_ACP, bytes); }

std::string programFile()
{
    return filled([](char* buffer, DWORD size) { return GetModuleFileNameA(nullptr, buffer, size); });
}

std::string workingFolder()
{
    return filled([](char* buffer, DWORD size) { return GetCurrentDirectoryA(size, buffer); });
}

std::string environmentVariable(const char* name)
{
    return filled([name](char* buffer, DWORD size) { return GetEnvironmentVariableA(name, buffer, size); });
}

std::string userName()
{
    std::string name(257, '\0');
    auto size = static_cast<DWORD>(name.size());
    if (GetUserNameA(name.data(), &size) == 0 || size == 0) return {};
    name.resize(size - 1);
    return name;
}

std::uint32_t currentProcessId() noexcept { return GetCurrentProcessId(); }

char pathSeparator() noexcept { return '\\'; }

SystemVersion systemVersion()
{
    // The documented call answers with the version that the program was made for.
    using GetVersion = LONG(WINAPI*)(OSVERSIONINFOEXW*);
    const HMODULE kernel = GetModuleHandleW(L"ntdll.dll");
    const auto getVersion =
        kernel == nullptr
            ? nullptr
            : reinterpret_cast<GetVersion>(reinterpret_cast<void*>(GetProcAddress(kernel, "RtlGetVersion")));
    OSVERSIONINFOEXW info{};
    info.dwOSVersionInfoSize = sizeof info;
    if (getVersion == nullptr || getVersion(&info) != 0) return {};
    return {info.dwMajorVersion, info.dwMinorVersion, info.dwBuildNumber, encodeCodePage(CP_ACP, info.szCSDVersion),
            info.wSuiteMask,     info.wProductType};
}

}  // namespace Oxa_1_1::platform
