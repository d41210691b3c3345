#pragma once

#include <span>
#include <vector>

#include "base/char.h"
#include "base/module/language.h"

/// Which languages are tried, in which order.
namespace Oxa_1_1::detail
{

/// The abbreviation of the first option like -lang=DEU or /LANG=fra among the arguments; empty when there is none or it
/// is empty itself.
Text languageOption(std::span<const Text> arguments);

/// A language that is asked for by its abbreviation, on the command line or in the settings.
struct RequestedLanguage
{
    Text abbreviation;
    LanguageSource source{};
};

/// The request of this process; its abbreviation is empty when there is none.
RequestedLanguage requestedLanguage();

struct LanguageCandidate
{
    unsigned short langId = 0;
    LanguageSource source{};
};

/// The requested language alone, or `langId` (unless ANY_LANGUAGE) and the languages of user and system; English
/// comes last when it is not among them.
std::vector<LanguageCandidate> languageCandidates(unsigned short langId);

/// Called when a module is gone, so that the next one with its handle does not inherit its language.
void forgetLanguageOf(HINSTANCE module);

}  // namespace Oxa_1_1::detail
