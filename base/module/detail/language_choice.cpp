#include "base/module/detail/language_choice.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

#include "base/module/detail/module_file.h"
#include "base/platform/modules/module_loader.h"
#include "base/platform/never_destroyed.h"
#include "base/platform/system/locales.h"
#include "base/platform/system/process.h"
#include "base/platform/system/user_settings.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

namespace
{

/// Set by tests.
constinit std::optional<SystemLanguages> overridden;

/// What user and system prefer, in this order.
std::vector<detail::LanguageCandidate> systemCandidates()
{
    using enum LanguageSource;
    if (overridden)
        return {{overridden->userInterface, USER_INTERFACE},
                {overridden->user, USER},
                {overridden->systemInterface, SYSTEM_INTERFACE},
                {overridden->system, SYSTEM}};
    std::vector<detail::LanguageCandidate> candidates;
    for (const std::uint16_t language : platform::userUiLanguages()) candidates.push_back({language, USER_INTERFACE});
    candidates.push_back({platform::userLanguage(), USER});
    candidates.push_back({platform::systemUiLanguage(), SYSTEM_INTERFACE});
    candidates.push_back({platform::systemLanguage(), SYSTEM});
    return candidates;
}

bool isSameIgnoringCase(TextView a, TextView b) { return String(a).compareIgnoreCase(b) == 0; }

/// The option of the process. It cannot change, so it is kept once it was found.
const Text& commandLineLanguage()
{
    static platform::NeverDestroyed<Text> kept;
    Text& abbreviation = kept.get();
    if (abbreviation.empty()) abbreviation = detail::languageOption(platform::commandLineArguments());
    return abbreviation;
}

/// The user's saved setting for the running program. It holds three letters and their zero at most.
Text savedLanguage()
{
    constexpr std::size_t BUFFER_SIZE = 4 * sizeof(Char);
    const Text executable = platform::longPathName(platform::moduleFileName(platform::programModule()));
    const Text program(detail::baseNameOf(executable));
    const std::array<TextView, 5> key = {OXA_TEXT("Software"), OXA_TEXT("Maraq"), program, OXA_TEXT("13.2"),
                                         OXA_TEXT("Settings")};
    const auto setting = platform::readUserSetting(key, OXA_TEXT("GUILanguage"), BUFFER_SIZE);
    if (!setting) return {};
    if (setting->type != platform::TEXT_SETTING && setting->type != platform::EXPANDABLE_TEXT_SETTING) return {};
    std::array<Char, 4> buffer{};
    std::memcpy(buffer.data(), setting->data.data(), std::min(setting->data.size(), sizeof buffer));
    const TextView text(buffer.data(), buffer.size());
    const std::size_t length = text.find(Char{0});
    return length == TextView::npos ? Text() : Text(text.substr(0, length));
}

/// 0 when no installed language has the abbreviation.
unsigned short languageAbbreviated(const Text& abbreviation)
{
    const auto matches = [](std::uint16_t language, void* context)
    { return isSameIgnoringCase(platform::languageAbbreviation(language), *static_cast<const Text*>(context)); };
    return platform::findInstalledLanguage(matches, const_cast<Text*>(&abbreviation));
}

}  // namespace

void overrideSystemLanguages(const std::optional<SystemLanguages>& languages) { overridden = languages; }

namespace detail
{

Text languageOption(std::span<const Text> arguments)
{
    constexpr TextView OPTION = OXA_TEXT("lang=");
    constexpr std::size_t MAX_ABBREVIATION = 3;
    for (const TextView argument : arguments)
    {
        if (argument.empty() || (argument[0] != '-' && argument[0] != '/')) continue;
        const TextView option = argument.substr(1);
        if (option.size() < OPTION.size() || option.size() > OPTION.size() + MAX_ABBREVIATION) continue;
        if (isSameIgnoringCase(option.substr(0, OPTION.size()), OPTION)) return Text(option.substr(OPTION.size()));
    }
    return {};
}

RequestedLanguage requestedLanguage()
{
    if (const Text& option = commandLineLanguage(); !option.empty()) return {option, LanguageSource::COMMAND_LINE};
    return {savedLanguage(), LanguageSource::SAVED_SETTING};
}

std::vector<LanguageCandidate> languageCandidates(unsigned short langId)
{
    std::vector<LanguageCandidate> candidates;
    const RequestedLanguage requested = requestedLanguage();
    if (!requested.abbreviation.empty())
    {
        const unsigned short id = languageAbbreviated(requested.abbreviation);
        if (id != 0) candidates.push_back({id, requested.source});
    }
    else
    {
        if (langId < ANY_LANGUAGE) candidates.push_back({langId, LanguageSource::ARGUMENT});
        const std::vector<LanguageCandidate> system = systemCandidates();
        candidates.insert(candidates.end(), system.begin(), system.end());
    }
    const bool endsByItself = std::any_of(candidates.begin(), candidates.end(),
                                          [](const auto& candidate) { return candidate.langId == BUILT_IN_LANGUAGE; });
    if (!endsByItself) candidates.push_back({BUILT_IN_LANGUAGE, LanguageSource::BUILT_IN});
    return candidates;
}

}  // namespace detail

std::vector<Text> GetUsedLangAbbrevs()
{
    const detail::RequestedLanguage requested = detail::requestedLanguage();
    if (!requested.abbreviation.empty()) return {requested.abbreviation};

    std::vector<Text> abbreviations;
    for (const detail::LanguageCandidate& candidate : detail::languageCandidates(ANY_LANGUAGE))
    {
        Text abbreviation = platform::languageAbbreviation(candidate.langId);
        const bool isKnown = std::any_of(abbreviations.begin(), abbreviations.end(),
                                         [&](const Text& known) { return isSameIgnoringCase(known, abbreviation); });
        if (!abbreviation.empty() && !isKnown) abbreviations.push_back(std::move(abbreviation));
    }
    return abbreviations;
}

}  // namespace Oxa_1_1
