#include "base/platform/modules/resources.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "base/platform/linux/modules/resource_store.h"
#include "base/platform/system/locales.h"

namespace Oxa_1_1::platform
{

namespace
{

using Versions = std::span<const formats::ResourceEntry>;

constexpr std::uint16_t NEUTRAL = 0;
constexpr std::uint16_t ENGLISH = 0x0409;
constexpr std::uint16_t PRIMARY_LANGUAGE = 0x3FF;

/// A pointer below 65536 is a number, and so is a text like "#123".
formats::ResourceKey keyOf(const Char* name) noexcept
{
    const auto value = reinterpret_cast<std::uintptr_t>(name);
    if (value <= 0xFFFF) return formats::ResourceKey::number(static_cast<unsigned>(value));
    if (*name != u'#') return formats::ResourceKey::text(name);
    unsigned number = 0;
    for (const Char* digit = name + 1; *digit >= u'0' && *digit <= u'9' && number <= 0xFFFF; ++digit)
        number = 10 * number + (*digit - u'0');
    return formats::ResourceKey::number(number & 0xFFFF);
}

Versions versionsOf(HINSTANCE module, const Char* type, const Char* name) noexcept
{
    const formats::ResourceIndex* const resources = resourcesOf(module);
    return resources != nullptr ? resources->find(keyOf(type), keyOf(name)) : Versions();
}

const formats::ResourceEntry* inLanguage(Versions versions, std::uint16_t language) noexcept
{
    for (const formats::ResourceEntry& version : versions)
        if (version.language == language) return &version;
    return nullptr;
}

/// The language itself, or the one that it is a variant of.
const formats::ResourceEntry* inLanguageOrPrimary(Versions versions, std::uint16_t language) noexcept
{
    const formats::ResourceEntry* const exact = inLanguage(versions, language);
    return exact != nullptr ? exact : inLanguage(versions, language & PRIMARY_LANGUAGE);
}

/// The language of the thread, the user's, none, English, or else the first.
const formats::ResourceEntry* preferred(Versions versions) noexcept
{
    if (versions.empty()) return nullptr;
    if (versions.size() == 1) return &versions.front();
    static const std::uint16_t user = userLanguage();
    for (const auto language : {static_cast<std::uint16_t>(threadLocale() & 0xFFFF), user, NEUTRAL, ENGLISH})
        if (const formats::ResourceEntry* const found = inLanguageOrPrimary(versions, language)) return found;
    return &versions.front();
}

HRSRC handleOf(const formats::ResourceEntry* entry) noexcept
{
    return reinterpret_cast<HRSRC>(const_cast<formats::ResourceEntry*>(entry));
}

}  // namespace

void offerResources(HINSTANCE module, std::span<const std::byte> compiledScript)
{
    std::optional<formats::ResourceIndex> resources = formats::ResourceIndex::fromRes(compiledScript);
    if (resources) setResources(module, std::make_unique<const formats::ResourceIndex>(std::move(*resources)));
}

void withdrawResources(HINSTANCE module) noexcept { setResources(module, nullptr); }

HRSRC findResource(HINSTANCE module, const Char* type, const Char* name) noexcept
{
    return handleOf(preferred(versionsOf(module, type, name)));
}

HRSRC findResource(HINSTANCE module, const Char* type, const Char* name, std::uint16_t language) noexcept
{
    return handleOf(inLanguage(versionsOf(module, type, name), language));
}

std::vector<std::uint16_t> resourceLanguages(HINSTANCE module, const Char* type, const Char* name)
{
    std::vector<std::uint16_t> languages;
    for (const formats::ResourceEntry& version : versionsOf(module, type, name)) languages.push_back(version.language);
    return languages;
}

std::span<const std::byte> resourceBytes(HINSTANCE, HRSRC resource) noexcept
{
    return reinterpret_cast<const formats::ResourceEntry*>(resource)->bytes;
}

Text loadString(HINSTANCE module, unsigned int id)
{
    const formats::ResourceIndex* const resources = resourcesOf(module);
    if (resources == nullptr) return {};
    const formats::ResourceEntry* const block = preferred(resources->stringBlock(id));
    return block != nullptr ? formats::ResourceIndex::stringAt(*block, id) : Text();
}

}  // namespace Oxa_1_1::platform
