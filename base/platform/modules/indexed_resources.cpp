#include "base/platform/modules/indexed_resources.h"

#include <optional>

#include "base/platform/system/locales.h"

namespace Oxa_1_1::platform
{

namespace
{

using Versions = formats::ResourceIndex::Entries;

constexpr std::uint16_t NEUTRAL = 0;
constexpr std::uint16_t ENGLISH = 0x0409;
constexpr std::uint16_t PRIMARY_LANGUAGE = 0x3FF;

/// The number in a text like "#123", as the system reads it: behind blanks and a sign, up to the first other character,
/// modulo 32 bits. None when it has more than 16.
std::optional<unsigned> numberNamed(const Char* text) noexcept
{
    while (*text != 0 && *text <= ' ') ++text;
    const bool isNegative = *text == '-';
    if (isNegative || *text == '+') ++text;
    std::uint32_t number = 0;
    for (; *text >= '0' && *text <= '9'; ++text) number = 10 * number + static_cast<std::uint32_t>(*text - '0');
    if (isNegative) number = 0 - number;
    return number <= 0xFFFF ? std::optional(number) : std::nullopt;
}

/// A pointer below 65536 is a number, and so is a text that begins with '#'. None for what names nothing.
std::optional<formats::ResourceKey> keyOf(const Char* name) noexcept
{
    const auto value = reinterpret_cast<std::uintptr_t>(name);
    if (value <= 0xFFFF) return formats::ResourceKey::number(static_cast<unsigned>(value));
    if (*name != '#') return formats::ResourceKey::text(name);
    const std::optional<unsigned> number = numberNamed(name + 1);
    return number ? std::optional(formats::ResourceKey::number(*number)) : std::nullopt;
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

Versions resourceVersions(const formats::ResourceIndex& resources, const Char* type, const Char* name) noexcept
{
    const auto typeKey = keyOf(type);
    const auto nameKey = keyOf(name);
    return typeKey && nameKey ? resources.find(*typeKey, *nameKey) : Versions();
}

HRSRC preferredVersion(Versions versions) noexcept { return handleOf(preferred(versions)); }

HRSRC versionIn(Versions versions, std::uint16_t language) noexcept { return handleOf(inLanguage(versions, language)); }

std::vector<std::uint16_t> languagesOf(Versions versions)
{
    std::vector<std::uint16_t> languages;
    for (const formats::ResourceEntry& version : versions) languages.push_back(version.language);
    return languages;
}

std::span<const std::byte> indexedBytes(HRSRC version) noexcept
{
    return reinterpret_cast<const formats::ResourceEntry*>(version)->bytes;
}

Text indexedString(const formats::ResourceIndex& resources, unsigned int id)
{
    const formats::ResourceEntry* const block = preferred(resources.stringBlock(id));
    return block != nullptr ? formats::ResourceIndex::stringAt(*block, id) : Text();
}

}  // namespace Oxa_1_1::platform
