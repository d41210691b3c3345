#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/module/module.h"
#include "tests/module/system.h"

namespace Oxa_1_1::test
{

/// The module of that name in the list; null when there is none.
inline const Module* findModule(const String& name) { return Module::find(name); }

/// Loads one of the fixtures for the duration of a scope.
class LoadedFixture
{
   public:
    explicit LoadedFixture(const std::string& name, const std::string& folder = "")
        : m_library(loadLibrary(OXA_FIXTURES "/" + (folder.empty() ? name : folder) + "/" + name + ".x.module")),
          m_module(findModule((name + ".x").c_str()))
    {
    }
    LoadedFixture(const LoadedFixture&) = delete;
    LoadedFixture& operator=(const LoadedFixture&) = delete;
    ~LoadedFixture()
    {
        if (m_library != nullptr) unloadLibrary(m_library);
    }

    bool isLoaded() const { return m_library != nullptr && m_module != nullptr; }
    const Module& module() const { return *m_module; }
    void* symbol(const char* name) const { return symbolOf(m_library, name); }

   private:
    void* m_library;
    const Module* m_module;
};

}  // namespace Oxa_1_1::test
