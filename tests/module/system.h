#pragma once

// What the tests of modules ask of the system by themselves.

#include <string>

namespace Oxa_1_1::test
{

/// Loads a shared library; null when that fails.
void* loadLibrary(const std::string& path);
void unloadLibrary(void* library);
void* symbolOf(void* library, const char* name);

/// Whether a library of this path is loaded.
bool isLoaded(const std::string& path);

/// Saves the text setting "GUILanguage" of the running program for the duration of a scope.
class SavedLanguage
{
   public:
    enum class Type
    {
        TEXT,
        EXPANDABLE_TEXT,
        NUMBER
    };
    SavedLanguage(const std::string& value, Type type);
    SavedLanguage(const SavedLanguage&) = delete;
    SavedLanguage& operator=(const SavedLanguage&) = delete;
    ~SavedLanguage();
};

/// The folder of what programs share, for the duration of the process.
std::string commonFilesFolder();

}  // namespace Oxa_1_1::test
