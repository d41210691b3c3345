#pragma once

#include <cstddef>
#include <istream>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "base/char.h"
#include "base/export.h"
#include "base/platform/platform_types.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

class SymbolTable;

/// The pointer form of a numbered resource or resource type: resourceNumber(10) is raw data.
inline const Char* resourceNumber(unsigned int number) noexcept
{
    return reinterpret_cast<const Char*>(static_cast<std::uintptr_t>(number & 0xFFFF));
}

/// A code module of the suite: a program or library with its resources, its translation and its symbols.
///
/// Each module holds one record of its own (see module_entry.h). The records form a process-wide list in the order of
/// registration. The list takes no lock: it changes while modules are loaded and unloaded, which the loader does one
/// at a time; do not walk it meanwhile.
class OXA_API Module
{
   public:
    class const_iterator;
    class Range;
    class ReverseRange;

    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// The handle of the module itself; null before it is initialised for the first time.
    HINSTANCE getInstance() const noexcept { return m_instance; }
    /// The handle that resources are taken from first: of the translation, or of the module when it has none.
    HINSTANCE getResourceInstance() const noexcept { return m_resourceInstance; }
    /// The base name of the module's file; empty before the module is initialised.
    const String& getModuleName() const noexcept;
    /// The symbols of the resource header that the module carries; empty when it carries none.
    const SymbolTable& getResourceSymbols() const noexcept;

    // ---- Resources ----------------------------------------------------------------------------------------------
    // A resource is looked for in the module's translation first (when `useTranslation`), then in the module itself.
    // Names and types are texts, compared without case, or numbers (see resourceNumber). With `lcid`, the language is
    // chosen as well: on entry the wanted locale, 0 for that of the thread; on return the locale of what was found.

    /// The handle of the module or translation that holds the resource; null when there is none.
    HINSTANCE findResource(const String& name, const Char* type, bool useTranslation = true,
                           DWORD* lcid = nullptr) const;
    HINSTANCE findResource(unsigned int id, const Char* type, bool useTranslation = true, DWORD* lcid = nullptr) const;

    /// The bytes of the resource and their number, valid while the module is loaded and not to be written; null and 0
    /// when there is none or it is empty.
    std::pair<void*, DWORD> getResource(const String& name, const Char* type, bool useTranslation = true,
                                        DWORD* lcid = nullptr) const;
    std::pair<void*, DWORD> getResource(unsigned int id, const Char* type, bool useTranslation = true,
                                        DWORD* lcid = nullptr) const;

    /// A stream over the bytes of the resource, in the language of the thread; null when there is none or it is empty.
    std::unique_ptr<std::istream> loadResource(const String& name, const Char* type, bool useTranslation = true) const;
    std::unique_ptr<std::istream> loadResource(unsigned int id, const Char* type, bool useTranslation = true) const;

    /// All bytes of a resource, which must be there and not empty.
    std::string loadStringResource(const String& name, const Char* type, bool useTranslation = true) const;

    // ---- The list -----------------------------------------------------------------------------------------------

    static const_iterator begin() noexcept;
    static const_iterator end() noexcept;
    static std::reverse_iterator<const_iterator> rbegin() noexcept;
    static std::reverse_iterator<const_iterator> rend() noexcept;
    /// All modules for range-for, in the order of registration or in reverse.
    static Range all() noexcept;
    static ReverseRange allReversed() noexcept;

    // Kept by the records.
    static Module* head;
    static Module* tail;
    static unsigned long long count;

   private:
    friend class ModuleEntry;

    Module() noexcept;
    ~Module();
    bool internalInit(HINSTANCE handle);
    void internalTerm();

    void loadSymbols();
    void terminate();
    std::pair<HINSTANCE, HRSRC> findResourceImpl(const Char* name, const Char* type, bool useTranslation,
                                                 DWORD* lcid) const;
    std::pair<void*, DWORD> getResourceImpl(const Char* name, const Char* type, bool useTranslation, DWORD* lcid) const;
    std::unique_ptr<std::istream> loadResourceImpl(const Char* name, const Char* type, bool useTranslation) const;
    static void checkLayout();

    Module* m_next = nullptr;
    Module* m_prev = nullptr;
    bool m_initialized = false;
    HINSTANCE m_instance = nullptr;
    HINSTANCE m_resourceInstance = nullptr;
    std::unique_ptr<String> m_name;
    std::unique_ptr<SymbolTable> m_symbols;
};

/// Walks the list of modules in both directions. One position stands for both ends: before the first record and
/// behind the last.
class Module::const_iterator
{
   public:
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = const Module;
    using difference_type = unsigned long long;
    using pointer = const Module*;
    using reference = const Module&;

    const_iterator() noexcept = default;

    reference operator*() const noexcept { return *m_module; }
    pointer operator->() const noexcept { return m_module; }

    const_iterator& operator++() noexcept
    {
        m_module = m_module == nullptr ? head : m_module->m_next;
        return *this;
    }
    const_iterator& operator--() noexcept
    {
        m_module = m_module == nullptr ? tail : m_module->m_prev;
        return *this;
    }
    /// As the prefix forms: no copy of the former position is made.
    const_iterator& operator++(int) noexcept { return ++*this; }
    const_iterator& operator--(int) noexcept { return --*this; }

   protected:
    friend class Module;
    explicit const_iterator(const Module* module) noexcept : m_module(module) {}

   private:
    friend bool operator==(const const_iterator& a, const const_iterator& b) noexcept
    {
        return a.m_module == b.m_module;
    }

    const Module* m_module = nullptr;
};

class Module::Range
{
   public:
    const_iterator begin() const noexcept { return Module::begin(); }
    const_iterator end() const noexcept { return Module::end(); }
};

class Module::ReverseRange
{
   public:
    std::reverse_iterator<const_iterator> begin() const noexcept { return Module::rbegin(); }
    std::reverse_iterator<const_iterator> end() const noexcept { return Module::rend(); }
};

/// The record of this library.
OXA_API const Module& getThisModule();

}  // namespace Oxa_1_1
