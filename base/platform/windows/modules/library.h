#pragma once

#include <string>
#include <utility>

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

/// A library of the system that is loaded at run time, and its functions by name.
class Library
{
   public:
    Library() = default;
    explicit Library(const std::string& file) : m_handle(LoadLibraryA(file.c_str())) {}
    Library(Library&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    Library& operator=(Library&& other) noexcept
    {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library()
    {
        if (m_handle != nullptr) FreeLibrary(m_handle);
    }

    bool isLoaded() const { return m_handle != nullptr; }

    /// Stores the function in `function`; null and false when there is none of that name.
    template <class Function>
    bool find(const char* name, Function*& function) const
    {
        const FARPROC found = m_handle == nullptr ? nullptr : GetProcAddress(m_handle, name);
        function = reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
        return function != nullptr;
    }

   private:
    HMODULE m_handle = nullptr;
};

}  // namespace Oxa_1_1::platform
