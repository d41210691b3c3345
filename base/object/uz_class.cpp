#include "base/object/uz_class.h"

#include <algorithm>

#include "base/platform/modules/run_time_type.h"

namespace Oxa_1_1
{

constinit const uZClass* uZClass::rootClass = nullptr;

namespace
{

/// The step of a pre-order walk through the classes below `top`, which is left out. Null stands for the whole forest.
bool stepPreOrder(const uZClass* top, const uZClass*& it) noexcept
{
    if (it == nullptr)
    {
        it = top != nullptr ? top->firstChild : uZClass::rootClass;
        return it != nullptr;
    }
    if (it->firstChild != nullptr)
    {
        it = it->firstChild;
        return true;
    }
    while (it != top && it->nextSibling == nullptr) it = it->base;
    it = it == top ? nullptr : it->nextSibling;
    return it != nullptr;
}

/// The same below a class, for cursors from anywhere.
bool stepBelow(const uZClass& top, const uZClass*& it) noexcept
{
    if (it != nullptr && !it->isDerivedFrom(&top))
    {
        it = nullptr;
        return false;
    }
    return stepPreOrder(&top, it);
}

bool stepSibling(const uZClass* first, const uZClass*& it) noexcept
{
    it = it == nullptr ? first : it->nextSibling;
    return it != nullptr;
}

}  // namespace

uZClass::uZClass(const Char* className, const Module& definingModule, const ClassVersion& classVersion)
    : uZClass(className, nullptr, definingModule, classVersion)
{
}

uZClass::uZClass(const Char* className, const uZClass* baseClass, const Module& definingModule,
                 const ClassVersion& classVersion)
    : name(className), base(baseClass), module(&definingModule), version(classVersion), nextSibling(listHead())
{
    if (base != nullptr)
    {
        m_depth = base->m_depth + 1;
        std::copy(std::begin(base->m_line), std::end(base->m_line), std::begin(m_line));
    }
    if (m_depth < LINE) m_line[m_depth] = this;
    listHead() = this;
}

uZClass::~uZClass()
{
    const uZClass** link = &listHead();
    while (*link != this) link = &(*link)->nextSibling;
    *link = nextSibling;
}

bool uZClass::isDerivedFromDeep(const uZClass* other) const noexcept
{
    const uZClass* c = this;
    while (c != nullptr && c->m_depth > other->m_depth) c = c->base;
    return c == other;
}

const uZClass* uZClass::find(TextView wanted) noexcept
{
    for (const uZClass* c : allClasses())
        if (c->name == wanted) return c;
    return nullptr;
}

bool uZClass::hasRunTimeType(const uZClass& record) noexcept { return platform::hasRunTimeType(&record); }

void uZClass::initClassStatics() const {}

void uZClass::clearClassStatics() const {}

/// The head of the list that holds this record.
const uZClass*& uZClass::listHead() const noexcept { return base != nullptr ? base->firstChild : rootClass; }

bool uZClass::iterateRootClasses(const uZClass*& it) noexcept { return stepSibling(rootClass, it); }

bool uZClass::iterateAllClasses(const uZClass*& it) noexcept { return stepPreOrder(nullptr, it); }

bool uZClass::iterateChildClasses(const uZClass*& it) const noexcept { return stepSibling(firstChild, it); }

bool uZClass::iterateDerivedClasses(const uZClass*& it) const noexcept { return stepBelow(*this, it); }

bool uZClass::iterateLeafClasses(const uZClass*& it) const noexcept
{
    while (stepBelow(*this, it))
        if (it->firstChild == nullptr) return true;
    return false;
}

bool uZClass::iterateBaseClasses(const uZClass*& it) const noexcept
{
    it = it == nullptr ? base : it->base;
    return it != nullptr;
}

ClassRange uZClass::rootClasses() noexcept
{
    return {nullptr, [](const uZClass*, const uZClass*& it) { return iterateRootClasses(it); }};
}

ClassRange uZClass::allClasses() noexcept
{
    return {nullptr, [](const uZClass*, const uZClass*& it) { return iterateAllClasses(it); }};
}

ClassRange uZClass::childClasses() const noexcept
{
    return {this, [](const uZClass* origin, const uZClass*& it) { return origin->iterateChildClasses(it); }};
}

ClassRange uZClass::derivedClasses() const noexcept
{
    return {this, [](const uZClass* origin, const uZClass*& it) { return origin->iterateDerivedClasses(it); }};
}

ClassRange uZClass::leafClasses() const noexcept
{
    return {this, [](const uZClass* origin, const uZClass*& it) { return origin->iterateLeafClasses(it); }};
}

ClassRange uZClass::baseClasses() const noexcept
{
    return {this, [](const uZClass* origin, const uZClass*& it) { return origin->iterateBaseClasses(it); }};
}

/// Modules that were built separately rely on these places.
struct uZClass::Layout
{
    static_assert(offsetof(uZClass, name) == sizeof(void*));
    static_assert(offsetof(uZClass, base) == 2 * sizeof(void*));
    static_assert(offsetof(uZClass, module) == 3 * sizeof(void*));
    static_assert(offsetof(uZClass, version) == 4 * sizeof(void*));
    static_assert(offsetof(uZClass, firstChild) == 4 * sizeof(void*) + sizeof(ClassVersion));
    static_assert(offsetof(uZClass, nextSibling) == 5 * sizeof(void*) + sizeof(ClassVersion));
};

}  // namespace Oxa_1_1
