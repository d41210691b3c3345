#include "base/module/module.h"

#include <utility>

#include "base/module/detail/language_choice.h"
#include "base/module/detail/module_file.h"
#include "base/module/language.h"
#include "base/module/module_entry.h"
#include "base/module/symbol_table.h"
#include "base/object/uz_class.h"
#include "base/platform/modules/module_loader.h"

namespace Oxa_1_1
{

constinit Module* Module::head = nullptr;
constinit Module* Module::tail = nullptr;
constinit unsigned long long Module::count = 0;

const Module& getThisModule() { return ModuleEntry::record(); }

Module::const_iterator Module::begin() noexcept { return const_iterator(head); }

Module::const_iterator Module::end() noexcept { return {}; }

std::reverse_iterator<Module::const_iterator> Module::rbegin() noexcept
{
    return std::reverse_iterator<const_iterator>(end());
}

std::reverse_iterator<Module::const_iterator> Module::rend() noexcept
{
    return std::reverse_iterator<const_iterator>(begin());
}

Module::Range Module::all() noexcept { return {}; }

Module::ReverseRange Module::allReversed() noexcept { return {}; }

Module::Module() noexcept : m_prev(tail)
{
    (tail != nullptr ? tail->m_next : head) = this;
    tail = this;
    ++count;
}

Module::~Module()
{
    m_name.reset();
    if (m_instance != nullptr)
    {
        withdrawModuleResources(m_instance);
        detail::forgetLanguageOf(m_instance);
    }
    --count;
    (m_next != nullptr ? m_next->m_prev : tail) = m_prev;
    (m_prev != nullptr ? m_prev->m_next : head) = m_next;
    // A module that was not terminated takes the library down with it; programs rely on this order at their end.
    if (m_initialized) ModuleEntry::record().terminate();
}

bool Module::internalInit(HINSTANCE handle)
{
    if (m_initialized || handle == nullptr) return false;
    m_instance = handle;
    const HINSTANCE translation = LoadTranslationDLL(handle, ANY_LANGUAGE);
    m_resourceInstance = translation != nullptr ? translation : handle;
    m_isTranslated = m_resourceInstance != handle;

    Text path = platform::moduleFileName(handle);
    if (Text longPath = platform::longPathName(path); !longPath.empty()) path = std::move(longPath);
    m_name = std::make_unique<String>(detail::baseNameOf(path));

    // From here on resources can be asked for, so the symbols can be loaded by the usual way.
    m_initialized = true;
    loadSymbols();
    for (const uZClass* c : uZClass::allClasses())
        if (c->module == this) c->initClassStatics();
    return true;
}

void Module::loadSymbols()
{
    m_symbols = std::make_unique<SymbolTable>();
    const auto header = loadResourceImpl(OXA_TEXT("resource.h"), OXA_TEXT("METADATA"), true);
    if (header == nullptr || !m_symbols->parseHeaderFile(*header)) m_symbols.reset();
}

void Module::internalTerm()
{
    if (m_initialized) terminate();
}

void Module::terminate()
{
    // The handle keeps its value, though nothing is looked for there any more.
    if (std::exchange(m_isTranslated, false)) FreeTranslationDLL(m_instance, m_resourceInstance);
    m_symbols.reset();
    for (const uZClass* c : uZClass::allClasses())
        if (c->module == this) c->clearClassStatics();
    m_initialized = false;
}

const Module* Module::find(const String& name) noexcept
{
    for (const Module& module : all())
        if (module.getModuleName().compareIgnoreCase(name) == 0) return &module;
    return nullptr;
}

HINSTANCE Module::resourcesFrom(bool useTranslation) const noexcept
{
    return useTranslation && m_isTranslated ? m_resourceInstance : m_instance;
}

const String& Module::getModuleName() const noexcept { return m_name != nullptr ? *m_name : String::EMPTY; }

const SymbolTable& Module::getResourceSymbols() const noexcept
{
    return m_symbols != nullptr ? *m_symbols : SymbolTable::EMPTY;
}

/// Modules that were built separately rely on these places.
struct Module::Layout
{
    static constexpr std::size_t WORD = sizeof(void*);
    static_assert(offsetof(Module, m_next) == 0);
    static_assert(offsetof(Module, m_prev) == WORD);
    static_assert(offsetof(Module, m_initialized) == 2 * WORD);
    static_assert(offsetof(Module, m_isTranslated) == 2 * WORD + 1);
    static_assert(offsetof(Module, m_instance) == 3 * WORD);
    static_assert(offsetof(Module, m_resourceInstance) == 4 * WORD);
    static_assert(offsetof(Module, m_name) == 5 * WORD);
    static_assert(offsetof(Module, m_symbols) == 6 * WORD);
    static_assert(sizeof(Module) == 7 * WORD);
};

}  // namespace Oxa_1_1
