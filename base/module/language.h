#pragma once

#include <optional>
#include <vector>

#include "base/char.h"
#include "base/export.h"
#include "base/module/module.h"
#include "base/platform/platform_types.h"

/// @file
/// The user-interface language. Modules hold their resources in English (United States); other languages come as
/// translation libraries, files of resources in the folder "languages\" beside the module, named by the three-letter
/// abbreviation of the language: DEU.dll. A second place is the folder of what programs share, below it the module's
/// company, product and product version. A translation serves only the very version of its module.
///
/// The language is that of the option -lang=DEU (or /lang=DEU) of the process; else the user's saved setting
/// "GUILanguage" of the program; else the first of the user's and the system's languages that has a translation.
/// English ends every list. Languages are LANGIDs; ANY_LANGUAGE stands for the choice as above, and for English as a
/// result.

namespace Oxa_1_1
{

/// As an argument the language that is chosen by the rules, as a result English.
inline constexpr unsigned short ANY_LANGUAGE = 0xFFFF;
/// English (United States), the language that is built in.
inline constexpr unsigned short BUILT_IN_LANGUAGE = 1033;

/// The language that the module was translated to; ANY_LANGUAGE for a module that runs in English.
OXA_API unsigned short GetCurrentLangId(const Module& module);

/// The abbreviations of the languages that are tried, in order.
OXA_API std::vector<Text> GetUsedLangAbbrevs();

/// Loads the module's translation to `langId` or else to the best language. Returns `module` when it has no
/// translation, or none of its own version that can be loaded. Modules do this by themselves
/// when they are initialised.
OXA_API HINSTANCE LoadTranslationDLL(HINSTANCE module, unsigned short langId);
/// Lets go of what LoadTranslationDLL returned for `module`.
OXA_API void FreeTranslationDLL(HINSTANCE module, HINSTANCE translation) noexcept;

/// The path of the module's manual beside it, name.pdf or, not `plainName`, name_ClassicUI.pdf; empty when it is not
/// there. The language takes no part.
OXA_API Text LocateHelpFile(HINSTANCE module, unsigned short langId, bool plainName);

/// Where a language that is tried comes from.
enum class LanguageSource
{
    COMMAND_LINE,      ///< The option -lang=DEU of the process.
    SAVED_SETTING,     ///< The user's setting "GUILanguage" of the program.
    ARGUMENT,          ///< The caller asked for it.
    USER_INTERFACE,    ///< The user's language for programs.
    USER,              ///< The user's language for dates and numbers.
    SYSTEM_INTERFACE,  ///< The system's language for programs.
    SYSTEM,            ///< The system's language for dates and numbers.
    BUILT_IN           ///< English, which ends every list.
};

/// What became of it.
enum class LanguageOutcome
{
    CHOSEN,           ///< Its translation is taken.
    BUILT_IN,         ///< English ends the search.
    REPEATED,         ///< The one before was the same.
    NO_ABBREVIATION,  ///< The system does not know the language.
    NO_FILE,          ///< None of the folders holds a translation that can be read.
    OTHER_VERSION     ///< The file belongs to another version of the module, or tells none.
};

/// A language that the search for a translation came by.
struct LanguageAttempt
{
    /// The LANGID; of a second try that of the primary language.
    unsigned short langId = 0;
    /// Why it was tried, and what became of it.
    /// @{
    LanguageSource source{};
    LanguageOutcome outcome{};
    /// @}
    /// The three letters that name its file; empty when it was not looked for.
    Text abbreviation;
    /// The file that was found, or the last one that was looked for; empty when none was.
    Text path;
};

/// What LoadTranslationDLL would try, and why it leaves each: for support, and for tests. Loads nothing.
OXA_API std::vector<LanguageAttempt> TraceTranslation(HINSTANCE module, unsigned short langId);

/// The languages of the user and the system.
struct SystemLanguages
{
    /// LANGIDs, in the order in which they are tried.
    /// @{
    unsigned short userInterface = BUILT_IN_LANGUAGE;
    unsigned short user = BUILT_IN_LANGUAGE;
    unsigned short systemInterface = BUILT_IN_LANGUAGE;
    unsigned short system = BUILT_IN_LANGUAGE;
    /// @}
};

/// Lets tests stand in for the system: the languages hold for the process until none are given.
OXA_API void overrideSystemLanguages(const std::optional<SystemLanguages>& languages);

}  // namespace Oxa_1_1
