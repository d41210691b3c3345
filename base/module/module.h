#pragma once

#include <cstddef>
#include <istream>
#include <iterator>
#include <memory>
#include <optional>
#include <ranges>
#include <span>
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
    /// The handle that resources are taken from first: of the translation, or of the module when it has none. A
    /// terminated module keeps it, though its translation is gone; resources are taken from the module itself then.
    HINSTANCE getResourceInstance() const noexcept { return m_resourceInstance; }
    /// The base name of the module's file; empty before the module is initialised.
    const String& getModuleName() const noexcept;
    /// The symbols of the resource header that the module carries; empty when it carries none.
    const SymbolTable& getResourceSymbols() const noexcept;

    // ---- Resources ----------------------------------------------------------------------------------------------

    /// The handle of the module or translation that holds the resource; null when there is none. Resources are named by
    /// texts, compared without case, or by numbers of 16 bits.
    /// @param type a text, compared without case, or a number (see resourceNumber())
    /// @param useTranslation whether to look in the module's translation before the module itself
    /// @param lcid null, or lets the language be chosen as well: on entry the wanted locale, 0 for that of the thread;
    /// on return the locale of what was found
    /// @{
    HINSTANCE findResource(const String& name, const Char* type, bool useTranslation = true,
                           DWORD* lcid = nullptr) const;
    HINSTANCE findResource(unsigned int id, const Char* type, bool useTranslation = true, DWORD* lcid = nullptr) const;
    /// @}

    /// The bytes of the resource that findResource() finds and their number, valid while the module is loaded and not
    /// to be written; null and 0 when there is none or it is empty.
    /// @{
    std::pair<void*, DWORD> getResource(const String& name, const Char* type, bool useTranslation = true,
                                        DWORD* lcid = nullptr) const;
    std::pair<void*, DWORD> getResource(unsigned int id, const Char* type, bool useTranslation = true,
                                        DWORD* lcid = nullptr) const;
    /// @}

    /// A stream over the bytes of the resource, in the language of the thread; null when there is none or it is empty.
    /// @{
    std::unique_ptr<std::istream> loadResource(const String& name, const Char* type, bool useTranslation = true) const;
    std::unique_ptr<std::istream> loadResource(unsigned int id, const Char* type, bool useTranslation = true) const;
    /// @}

    /// The bytes of the resource that findResource() finds, valid while the module is loaded; none when there is none
    /// or it is empty.
    /// @{
    std::span<const std::byte> resourceBytes(const String& name, const Char* type, bool useTranslation = true,
                                             DWORD* lcid = nullptr) const;
    std::span<const std::byte> resourceBytes(unsigned int id, const Char* type, bool useTranslation = true,
                                             DWORD* lcid = nullptr) const;
    /// @}
    /// The entry of the string table, of the translation or else of the module; none when it is missing or empty.
    std::optional<String> loadText(unsigned int id) const;

    /// All bytes of a resource, which must be there and not empty.
    std::string loadStringResource(const String& name, const Char* type, bool useTranslation = true) const;

    // ---- The list -----------------------------------------------------------------------------------------------

    /// The ends of the list, in the order of registration or in reverse.
    /// @{
    static const_iterator begin() noexcept;
    static const_iterator end() noexcept;
    static std::reverse_iterator<const_iterator> rbegin() noexcept;
    static std::reverse_iterator<const_iterator> rend() noexcept;
    /// @}
    /// The first module of that name, compared without case; null when there is none.
    static const Module* find(const String& name) noexcept;
    /// All modules for range-for and the algorithms of std::ranges, in the order of registration or in reverse.
    /// @{
    static Range all() noexcept;
    static ReverseRange allReversed() noexcept;
    /// @}

    /// The ends of the list, null when it is empty, and the number of modules. Kept by the records.
    /// @{
    static Module* head;
    static Module* tail;
    static unsigned long long count;
    /// @}

   private:
    friend class ModuleEntry;
    friend class ScopedResourceDomain;

    Module() noexcept;
    ~Module();
    bool internalInit(HINSTANCE handle);
    void internalTerm();

    OXA_HIDDEN void loadSymbols();
    OXA_HIDDEN void terminate();
    OXA_HIDDEN std::pair<HINSTANCE, HRSRC> findResourceImpl(const Char* name, const Char* type, bool useTranslation,
                                                            DWORD* lcid) const;
    OXA_HIDDEN std::span<const std::byte> resourceBytesImpl(const Char* name, const Char* type, bool useTranslation,
                                                            DWORD* lcid) const;
    OXA_HIDDEN std::pair<void*, DWORD> getResourceImpl(const Char* name, const Char* type, bool useTranslation,
                                                       DWORD* lcid) const;
    OXA_HIDDEN std::unique_ptr<std::istream> loadResourceImpl(const Char* name, const Char* type,
                                                              bool useTranslation) const;
    OXA_HIDDEN HINSTANCE resourcesFrom(bool useTranslation) const noexcept;
    struct Layout;

    Module* m_next = nullptr;
    Module* m_prev = nullptr;
    bool m_initialized = false;
    // Whether m_resourceInstance is a translation that is still loaded: the handle outlives it.
    bool m_isTranslated = false;
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
    /// What algorithms ask for.
    /// @{
    using iterator_category = std::bidirectional_iterator_tag;
    using value_type = const Module;
    using difference_type = unsigned long long;
    using pointer = const Module*;
    using reference = const Module&;
    /// @}

    /// At the end, which stands for both ends.
    const_iterator() noexcept = default;

    /// The module; there must be one.
    /// @{
    reference operator*() const noexcept { return *m_module; }
    pointer operator->() const noexcept { return m_module; }
    /// @}

    /// To the next module and to the one before; from the end to the first and the last.
    /// @{
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
    /// @}
    /// As the prefix forms: no copy of the former position is made.
    /// @{
    const_iterator& operator++(int) noexcept { return ++*this; }
    const_iterator& operator--(int) noexcept { return --*this; }
    /// @}

   protected:
    friend class Module;
    /// At this module; at the end for null.
    explicit const_iterator(const Module* module) noexcept : m_module(module) {}

   private:
    friend bool operator==(const const_iterator& a, const const_iterator& b) noexcept
    {
        return a.m_module == b.m_module;
    }

    const Module* m_module = nullptr;
};

/// The list as a range of the standard library, in the order of registration.
class Module::Range
{
   public:
    /// As const_iterator, but with the postfix forms and the distances that algorithms expect.
    class iterator
    {
       public:
        /// What algorithms ask for.
        /// @{
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = Module;
        using difference_type = std::ptrdiff_t;
        using pointer = const Module*;
        using reference = const Module&;
        /// @}

        /// At the end.
        iterator() noexcept = default;
        /// At the place of another.
        explicit iterator(const_iterator place) noexcept : m_place(place) {}

        /// The module, and the steps to its neighbours.
        /// @{
        reference operator*() const noexcept { return *m_place; }
        pointer operator->() const noexcept { return &*m_place; }
        iterator& operator++() noexcept
        {
            ++m_place;
            return *this;
        }
        iterator operator++(int) noexcept
        {
            const iterator before = *this;
            ++m_place;
            return before;
        }
        iterator& operator--() noexcept
        {
            --m_place;
            return *this;
        }
        iterator operator--(int) noexcept
        {
            const iterator before = *this;
            --m_place;
            return before;
        }
        friend bool operator==(const iterator& a, const iterator& b) noexcept { return a.m_place == b.m_place; }
        /// @}

       private:
        const_iterator m_place;
    };

    /// For range-for.
    /// @{
    static iterator begin() noexcept { return iterator(Module::begin()); }
    static iterator end() noexcept { return {}; }
    /// @}
};

/// The list as a range of the standard library, the newest first.
class Module::ReverseRange
{
   public:
    /// For range-for.
    /// @{
    static std::reverse_iterator<Range::iterator> begin() noexcept
    {
        return std::reverse_iterator<Range::iterator>(Range::end());
    }
    static std::reverse_iterator<Range::iterator> end() noexcept
    {
        return std::reverse_iterator<Range::iterator>(Range::begin());
    }
    /// @}
};

/// The record of this library.
OXA_API const Module& getThisModule();

}  // namespace Oxa_1_1

// The ranges hold nothing: they are copied freely, and their iterators outlive them.
/// @cond
template <>
inline constexpr bool std::ranges::enable_view<Oxa_1_1::Module::Range> = true;
template <>
inline constexpr bool std::ranges::enable_view<Oxa_1_1::Module::ReverseRange> = true;
template <>
inline constexpr bool std::ranges::enable_borrowed_range<Oxa_1_1::Module::Range> = true;
template <>
inline constexpr bool std::ranges::enable_borrowed_range<Oxa_1_1::Module::ReverseRange> = true;
/// @endcond
