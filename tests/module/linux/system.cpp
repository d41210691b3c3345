#include "tests/module/system.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Oxa_1_1::test
{

namespace
{

std::filesystem::path settingsFile()
{
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").stem();
    return std::filesystem::temp_directory_path() / OXA_TEST_RUN "_settings/Maraq" / program / "13.2/Settings.reg";
}

std::string settingText(const std::string& value, SavedLanguage::Type type)
{
    if (type == SavedLanguage::Type::TEXT) return '"' + value + '"';
    if (type == SavedLanguage::Type::NUMBER) return "dword:" + value;
    std::ostringstream bytes("hex(2):", std::ios::ate);
    for (const char c : value) bytes << std::hex << static_cast<int>(c) << ",00,";
    bytes << "00,00";
    return bytes.str();
}

}  // namespace

void* loadLibrary(const std::string& path)
{
    void* const library = dlopen(path.c_str(), RTLD_NOW);
    if (library == nullptr) ADD_FAILURE() << dlerror();
    return library;
}

void unloadLibrary(void* library) { dlclose(library); }

void* symbolOf(void* library, const char* name) { return dlsym(library, name); }

bool isLoaded(const std::string& path)
{
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (library != nullptr) dlclose(library);
    return library != nullptr;
}

SavedLanguage::SavedLanguage(const std::string& value, Type type)
{
    const std::filesystem::path path = settingsFile();
    setenv("XDG_CONFIG_HOME", (std::filesystem::temp_directory_path() / OXA_TEST_RUN "_settings").c_str(), 1);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path);
    file << "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Maraq\\"
         << path.parent_path().parent_path().filename().string()
         << "\\13.2\\Settings]\n\"GUILanguage\"=" << settingText(value, type) << '\n';
}

SavedLanguage::~SavedLanguage() { std::filesystem::remove(settingsFile()); }

std::string commonFilesFolder()
{
    const std::string folder = std::filesystem::temp_directory_path() / OXA_TEST_RUN "_common files";
    setenv("OXA_COMMON_FILES", folder.c_str(), 1);
    return folder;
}

}  // namespace Oxa_1_1::test
