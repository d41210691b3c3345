#include "tests/module/system.h"

#include "base/platform/windows/windows_api.h"
// Behind the system's header, which it builds on.
#include <shlobj.h>

#include <array>
#include <filesystem>

namespace Oxa_1_1::test
{

namespace
{

std::wstring settingsKey()
{
    std::array<wchar_t, MAX_PATH> path{};
    GetModuleFileNameW(nullptr, path.data(), MAX_PATH);
    return L"Software\\Maraq\\" + std::filesystem::path(path.data()).stem().wstring() + L"\\13.2\\Settings";
}

}  // namespace

void* loadLibrary(const std::string& path) { return LoadLibraryA(path.c_str()); }

void unloadLibrary(void* library) { FreeLibrary(static_cast<HMODULE>(library)); }

void* symbolOf(void* library, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

bool isLoaded(const std::string& path) { return GetModuleHandleA(path.c_str()) != nullptr; }

SavedLanguage::SavedLanguage(const std::string& value, Type type)
{
    const std::wstring text(value.begin(), value.end());
    const DWORD number = 7;
    if (type != Type::NUMBER)
        RegSetKeyValueW(HKEY_CURRENT_USER, settingsKey().c_str(), L"GUILanguage",
                        type == Type::TEXT ? REG_SZ : REG_EXPAND_SZ, text.c_str(),
                        static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    else
        RegSetKeyValueW(HKEY_CURRENT_USER, settingsKey().c_str(), L"GUILanguage", REG_DWORD, &number, sizeof number);
}

SavedLanguage::~SavedLanguage() { RegDeleteKeyValueW(HKEY_CURRENT_USER, settingsKey().c_str(), L"GUILanguage"); }

std::string commonFilesFolder()
{
    std::array<char, MAX_PATH> path{};
    SHGetSpecialFolderPathA(nullptr, path.data(), CSIDL_PROGRAM_FILES_COMMON, TRUE);
    return path.data();
}

}  // namespace Oxa_1_1::test
