#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <ranges>
#include <type_traits>

#include "base/char.h"
#include "base/export.h"

namespace Oxa_1_1
{

class Module;
class uZClass;

/// Version of a class.
struct ClassVersion
{
    /// From the most to the least significant part.
    /// @{
    std::uint16_t major = 0;
    std::uint16_t minor = 0;
    std::uint16_t patch = 0;
    std::uint16_t build = 0;
    /// @}

    /// Part by part.
    friend auto operator<=>(const ClassVersion&, const ClassVersion&) = default;
};
static_assert(sizeof(ClassVersion) == 8 && std::is_trivially_copyable_v<ClassVersion>);

/// The classes that one of the walks of uZClass visits, for range-for.
class ClassRange
{
   public:
    /// One of the walks: moves the cursor on and says whether there was a next class.
    using Step = bool (*)(const uZClass* origin, const uZClass*& it);

    /// The place in a walk; a default one is the end.
    class iterator
    {
       public:
        /// What algorithms ask for.
        /// @{
        using iterator_category = std::input_iterator_tag;
        using value_type = const uZClass*;
        using difference_type = std::ptrdiff_t;
        using pointer = const value_type*;
        using reference = value_type;
        /// @}

        /// The end, and the first class of a range.
        /// @{
        iterator() noexcept = default;
        explicit iterator(const ClassRange& range) : m_origin(range.m_origin), m_step(range.m_step) { ++*this; }
        /// @}

        /// The record of the class, and the steps to the next.
        /// @{
        reference operator*() const noexcept { return m_class; }
        iterator& operator++()
        {
            m_step(m_origin, m_class);
            return *this;
        }
        iterator operator++(int)
        {
            iterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const iterator& a, const iterator& b) noexcept { return a.m_class == b.m_class; }
        /// @}

       private:
        const uZClass* m_origin = nullptr;
        Step m_step = nullptr;
        const uZClass* m_class = nullptr;
    };

    /// What `step` visits, seen from `origin`.
    ClassRange(const uZClass* origin, Step step) noexcept : m_origin(origin), m_step(step) {}

    /// For range-for; each begin() is a walk of its own.
    /// @{
    iterator begin() const { return iterator(*this); }
    iterator end() const { return {}; }
    /// @}

   private:
    const uZClass* m_origin = nullptr;
    Step m_step = nullptr;
};

/// The record of one class of the object model: its name, its place in the process-wide forest of classes, and the
/// code module that defines it.
///
/// A class offers its record by a static Class(), built on first use as a function-local static, and by a virtual
/// getClassType(). Records enter the forest when they are built and leave it when they are destroyed, derived ones
/// before their bases. The forest takes no lock: walk it while no module is being loaded or unloaded.
class OXA_API uZClass
{
   public:
    /// A root class. `name` is kept, not copied.
    uZClass(const Char* name, const Module& module, const ClassVersion& version);
    /// A class derived from `base`.
    uZClass(const Char* name, const uZClass* base, const Module& module, const ClassVersion& version);
    uZClass(const uZClass&) = delete;
    uZClass& operator=(const uZClass&) = delete;
    virtual ~uZClass();

    /// Called when the class's module has been initialised, and when it is terminated. Nothing to do here.
    /// @{
    virtual void initClassStatics() const;
    virtual void clearClassStatics() const;
    /// @}

    /// Whether this class is `other` or derived from it; false for null.
    bool isDerivedFrom(const uZClass* other) const noexcept
    {
        if (other == nullptr) return false;
        return other->m_depth < LINE ? m_line[other->m_depth] == other : isDerivedFromDeep(other);
    }

    /// The class of that name, the first that a walk of all classes comes by; null when there is none.
    static const uZClass* find(TextView name) noexcept;

    /// Whether the language itself knows the type of a record at run time: false for one of a module that was built
    /// without such types (-fno-rtti), which cannot be cast.
    static bool hasRunTimeType(const uZClass& record) noexcept;

    // ---- Walks --------------------------------------------------------------------------------------------------

    /// Classes without base. Start with a null cursor: each call moves it to the next class and returns true; at the
    /// end it is null again and the call returns false. Roots and siblings come newest first, subtrees in pre-order.
    static bool iterateRootClasses(const uZClass*& it) noexcept;
    /// Every class.
    static bool iterateAllClasses(const uZClass*& it) noexcept;
    /// The direct derived classes.
    bool iterateChildClasses(const uZClass*& it) const noexcept;
    /// All classes below this one. From a cursor that is none of them the walk ends, here and for the leaves.
    bool iterateDerivedClasses(const uZClass*& it) const noexcept;
    /// Those classes below this one that have no derived classes.
    bool iterateLeafClasses(const uZClass*& it) const noexcept;
    /// The ancestors, from the direct base to the root.
    bool iterateBaseClasses(const uZClass*& it) const noexcept;

    /// The same walks as ranges: for (const uZClass* c : record.derivedClasses()) ...
    /// @{
    static ClassRange rootClasses() noexcept;
    static ClassRange allClasses() noexcept;
    ClassRange childClasses() const noexcept;
    ClassRange derivedClasses() const noexcept;
    ClassRange leafClasses() const noexcept;
    ClassRange baseClasses() const noexcept;
    /// @}

    // ---- Fields -------------------------------------------------------------------------------------------------

    /// Unique by custom; nothing checks it.
    const Char* const name;
    /// The record of the direct base class; null for a root.
    const uZClass* const base;
    /// The code module that defines the class.
    const Module* const module;
    /// All zero for the classes of this library.
    const ClassVersion version;
    /// The links of the forest, kept by the records themselves.
    /// @{
    mutable const uZClass* firstChild = nullptr;
    mutable const uZClass* nextSibling = nullptr;
    /// @}

    /// The newest root class; null when there is no class.
    static const uZClass* rootClass;

   private:
    OXA_HIDDEN const uZClass*& listHead() const noexcept;
    bool isDerivedFromDeep(const uZClass* other) const noexcept;
    struct Layout;

    /// The ancestors from the root to the class itself, so that one of them is told by a look at its depth. What lies
    /// deeper than the line is long has to be walked to.
    /// @{
    static constexpr std::uint32_t LINE = 8;
    std::uint32_t m_depth = 0;
    const uZClass* m_line[LINE] = {};
    /// @}
};

}  // namespace Oxa_1_1

// A range holds nothing: it is copied freely, and its iterators outlive it.
/// @cond
template <>
inline constexpr bool std::ranges::enable_view<Oxa_1_1::ClassRange> = true;
template <>
inline constexpr bool std::ranges::enable_borrowed_range<Oxa_1_1::ClassRange> = true;
/// @endcond
