// Resources of modules: which one is taken, and its bytes, stream or text.

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "base/module/detail/memory_stream.h"
#include "base/module/module.h"
#include "base/platform/modules/resources.h"
#include "base/platform/system/locales.h"

namespace Oxa_1_1
{

namespace
{

constexpr DWORD LANGUAGE = 0xFFFF;
constexpr DWORD PRIMARY_LANGUAGE = 0x3FF;
constexpr DWORD SORT_ORDER = 0xF0000;

/// Gives the thread another locale for the duration of a scope. 0 leaves the thread its own.
class ScopedThreadLocale
{
   public:
    explicit ScopedThreadLocale(LCID locale) : m_saved(platform::threadLocale())
    {
        if (locale != 0 && locale != m_saved) platform::setThreadLocale(locale);
    }
    ScopedThreadLocale(const ScopedThreadLocale&) = delete;
    ScopedThreadLocale& operator=(const ScopedThreadLocale&) = delete;
    ~ScopedThreadLocale()
    {
        if (platform::threadLocale() != m_saved) platform::setThreadLocale(m_saved);
    }

   private:
    LCID m_saved;
};

/// The language to take of those that there are; 0 when none suits.
std::uint16_t chooseLanguage(const std::vector<std::uint16_t>& languages, DWORD wanted)
{
    if (languages.size() == 1) return languages.front();
    for (const DWORD language : {wanted & LANGUAGE, wanted & PRIMARY_LANGUAGE})
        if (std::binary_search(languages.begin(), languages.end(), static_cast<std::uint16_t>(language)))
            return static_cast<std::uint16_t>(language);
    return 0;
}

/// Takes the resource in the language that suits `lcid`, if there is one, instead of the one found without.
HRSRC findInLanguage(HINSTANCE module, HRSRC found, const Char* type, const Char* name, DWORD& lcid)
{
    const LCID current = platform::threadLocale();
    const DWORD wanted = lcid != 0 ? lcid : current;
    const std::uint16_t chosen = chooseLanguage(platform::resourceLanguages(module, type, name), wanted);
    lcid = current;
    if (chosen == 0) return found;

    const LCID target = (current & SORT_ORDER) | chosen;
    const ScopedThreadLocale guard(target);
    const HRSRC better = platform::findResource(module, type, name, chosen);
    if (better == nullptr) return found;
    lcid = target;
    return better;
}

}  // namespace

std::pair<HINSTANCE, HRSRC> Module::findResourceImpl(const Char* name, const Char* type, bool useTranslation,
                                                     DWORD* lcid) const
{
    if (name == nullptr) return {};
    const HINSTANCE module = resourcesFrom(useTranslation);
    const HRSRC found = platform::findResource(module, type, name);
    if (found == nullptr)
        return useTranslation ? findResourceImpl(name, type, false, lcid) : std::pair<HINSTANCE, HRSRC>();
    if (lcid == nullptr) return {module, found};
    return {module, findInLanguage(module, found, type, name, *lcid)};
}

HINSTANCE Module::findResource(const String& name, const Char* type, bool useTranslation, DWORD* lcid) const
{
    return findResourceImpl(name.stringPath(), type, useTranslation, lcid).first;
}

HINSTANCE Module::findResource(unsigned int id, const Char* type, bool useTranslation, DWORD* lcid) const
{
    return findResourceImpl(resourceNumber(id), type, useTranslation, lcid).first;
}

std::span<const std::byte> Module::resourceBytesImpl(const Char* name, const Char* type, bool useTranslation,
                                                     DWORD* lcid) const
{
    const auto [module, resource] = findResourceImpl(name, type, useTranslation, lcid);
    return resource != nullptr ? platform::resourceBytes(module, resource) : std::span<const std::byte>();
}

std::span<const std::byte> Module::resourceBytes(const String& name, const Char* type, bool useTranslation,
                                                 DWORD* lcid) const
{
    return resourceBytesImpl(name.stringPath(), type, useTranslation, lcid);
}

std::span<const std::byte> Module::resourceBytes(unsigned int id, const Char* type, bool useTranslation,
                                                 DWORD* lcid) const
{
    return resourceBytesImpl(resourceNumber(id), type, useTranslation, lcid);
}

std::pair<void*, DWORD> Module::getResourceImpl(const Char* name, const Char* type, bool useTranslation,
                                                DWORD* lcid) const
{
    const std::span<const std::byte> bytes = resourceBytesImpl(name, type, useTranslation, lcid);
    if (bytes.empty()) return {};
    return {const_cast<std::byte*>(bytes.data()), static_cast<DWORD>(bytes.size())};
}

std::pair<void*, DWORD> Module::getResource(const String& name, const Char* type, bool useTranslation,
                                            DWORD* lcid) const
{
    return getResourceImpl(name.stringPath(), type, useTranslation, lcid);
}

std::pair<void*, DWORD> Module::getResource(unsigned int id, const Char* type, bool useTranslation, DWORD* lcid) const
{
    return getResourceImpl(resourceNumber(id), type, useTranslation, lcid);
}

std::unique_ptr<std::istream> Module::loadResourceImpl(const Char* name, const Char* type, bool useTranslation) const
{
    DWORD lcid = 0;
    const auto [module, resource] = findResourceImpl(name, type, useTranslation, &lcid);
    if (resource == nullptr) return nullptr;
    const std::span<const std::byte> bytes = platform::resourceBytes(module, resource);
    if (bytes.empty()) return nullptr;
    const ScopedThreadLocale guard(lcid);
    return std::make_unique<detail::MemoryStream>(bytes);
}

std::unique_ptr<std::istream> Module::loadResource(const String& name, const Char* type, bool useTranslation) const
{
    return loadResourceImpl(name.stringPath(), type, useTranslation);
}

std::unique_ptr<std::istream> Module::loadResource(unsigned int id, const Char* type, bool useTranslation) const
{
    return loadResourceImpl(resourceNumber(id), type, useTranslation);
}

std::string Module::loadStringResource(const String& name, const Char* type, bool useTranslation) const
{
    const std::unique_ptr<std::istream> stream = loadResourceImpl(name.stringPath(), type, useTranslation);
    return {std::istreambuf_iterator<char>(*stream), {}};
}

std::optional<String> Module::loadText(unsigned int id) const
{
    Text text = platform::loadString(resourcesFrom(true), id);
    if (text.empty() && m_isTranslated) text = platform::loadString(m_instance, id);
    return text.empty() ? std::nullopt : std::optional<String>(std::move(text));
}

String String::loadFromResource(unsigned int id, const Module& module)
{
    std::optional<String> text = module.loadText(id);
    return text ? *std::move(text) : String(OXA_TEXT("Error loading string resource!"));
}

}  // namespace Oxa_1_1
