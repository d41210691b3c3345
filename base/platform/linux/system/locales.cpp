#include "base/platform/system/locales.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <initializer_list>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "base/platform/linux/system/environment.h"

namespace Oxa_1_1::platform
{

namespace
{

struct Language
{
    std::uint16_t id;
    std::string_view abbreviation;
    std::string_view name;
};

constexpr auto LANGUAGES = std::to_array<Language>({
#include "base/platform/linux/system/language_table.inc"
});

constexpr std::uint16_t ENGLISH = 0x0409;
constexpr std::uint16_t FIRST_REGIONAL = 0x400;

std::uint16_t languageNamed(std::string_view name)
{
    const auto found =
        std::find_if(LANGUAGES.begin(), LANGUAGES.end(), [&](const Language& l) { return l.name == name; });
    return found != LANGUAGES.end() ? found->id : std::uint16_t{0};
}

std::string join(std::initializer_list<std::string_view> parts)
{
    std::string name;
    for (const std::string_view part : parts) name.append(name.empty() ? "" : "-").append(part);
    return name;
}

/// A language that is written in several scripts has none in the names of most locales: the first one serves, but for
/// Serbian, whose locales are Cyrillic.
std::uint16_t languageInRegion(std::string_view language, std::string_view region)
{
    if (language == "sr")
        if (const std::uint16_t id = languageNamed(join({language, "Cyrl", region}))) return id;
    const std::string start = std::string(language) + '-';
    const std::string end = '-' + std::string(region);
    const auto found =
        std::find_if(LANGUAGES.begin(), LANGUAGES.end(),
                     [&](const Language& l) { return l.name.starts_with(start) && l.name.ends_with(end); });
    return found != LANGUAGES.end() ? found->id : std::uint16_t{0};
}

/// The name with the script or variant that the modifier of a locale means.
std::string modified(std::string_view language, std::string_view region, std::string_view modifier)
{
    if (modifier == "latin") return join({language, "Latn", region});
    if (modifier == "cyrillic") return join({language, "Cyrl", region});
    if (modifier == "valencia") return join({language, region, "valencia"});
    return join({language, region});
}

/// The LANGID of a locale like de_AT.UTF-8 or sr_RS@latin; none when it is not known.
std::optional<std::uint16_t> languageOfLocale(std::string_view locale)
{
    const std::size_t modifierStart = locale.find('@');
    const std::string_view modifier =
        modifierStart == std::string_view::npos ? std::string_view() : locale.substr(modifierStart + 1);
    locale = locale.substr(0, locale.find_first_of(".@"));
    if (locale.empty()) return std::nullopt;
    // Without a region English is the one that is built in.
    if (locale == "C" || locale == "POSIX" || locale == "en") return ENGLISH;

    const std::size_t separator = locale.find_first_of("_-");
    const std::string language(locale.substr(0, separator));
    if (separator != std::string_view::npos)
    {
        const std::string region(locale.substr(separator + 1));
        const std::string plain = join({language, region});
        for (const std::string& name : {modified(language, region, modifier), plain})
            if (const std::uint16_t id = languageNamed(name)) return id;
        if (const std::uint16_t id = languageInRegion(language, region)) return id;
    }
    const std::uint16_t id = languageNamed(language);
    return id != 0 ? std::optional(id) : std::nullopt;
}

/// The first of the variables that names a language.
std::optional<std::uint16_t> languageOfEnvironment(std::initializer_list<const char*> variables)
{
    for (const char* const variable : variables)
    {
        if (const auto id = languageOfLocale(environmentVariable(variable))) return id;
    }
    return std::nullopt;
}

/// The language that the files of system-wide settings name.
std::uint16_t configuredLanguage()
{
    constexpr std::string_view VARIABLE = "LANG=";
    for (const char* const path : {"/etc/default/locale", "/etc/locale.conf"})
    {
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);)
        {
            if (!line.starts_with(VARIABLE)) continue;
            std::string value = line.substr(VARIABLE.size());
            std::erase(value, '"');
            if (const auto id = languageOfLocale(value)) return *id;
        }
    }
    return ENGLISH;
}

/// 0 until it is set, which stands for the user's.
constinit thread_local LCID currentLocale = 0;

}  // namespace

LCID threadLocale() noexcept
{
    if (currentLocale == 0) currentLocale = userLanguage();
    return currentLocale;
}

void setThreadLocale(LCID locale) noexcept { currentLocale = locale; }

std::vector<std::uint16_t> userUiLanguages()
{
    std::vector<std::uint16_t> languages;
    std::istringstream list(environmentVariable("LANGUAGE"));
    for (std::string locale; std::getline(list, locale, ':');)
        if (const auto id = languageOfLocale(locale)) languages.push_back(*id);
    if (languages.empty())
        languages.push_back(languageOfEnvironment({"LC_ALL", "LC_MESSAGES", "LANG"}).value_or(systemUiLanguage()));
    return languages;
}

std::uint16_t userLanguage()
{
    return languageOfEnvironment({"LC_ALL", "LC_MESSAGES", "LANG"}).value_or(systemLanguage());
}

std::uint16_t systemUiLanguage() { return configuredLanguage(); }

std::uint16_t systemLanguage() { return configuredLanguage(); }

Text languageAbbreviation(std::uint16_t language)
{
    const auto found = std::lower_bound(LANGUAGES.begin(), LANGUAGES.end(), language,
                                        [](const Language& l, std::uint16_t id) { return l.id < id; });
    if (found == LANGUAGES.end() || found->id != language) return {};
    return {found->abbreviation.begin(), found->abbreviation.end()};
}

std::uint16_t findInstalledLanguage(bool (*matches)(std::uint16_t, void*), void* context)
{
    for (const Language& language : LANGUAGES)
        if (language.id >= FIRST_REGIONAL && matches(language.id, context)) return language.id;
    return 0;
}

void setControlsLanguage(std::uint16_t) noexcept {}

}  // namespace Oxa_1_1::platform
