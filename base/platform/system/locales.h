#pragma once

#include <cstdint>
#include <vector>

#include "base/char.h"
#include "base/platform/platform_types.h"

/// The locale of the thread, and the languages of the user and of the system as LANGIDs.
namespace Oxa_1_1::platform
{

LCID threadLocale() noexcept;
void setThreadLocale(LCID locale) noexcept;

/// The languages of the user for programs, the best first; at least one.
std::vector<std::uint16_t> userUiLanguages();
std::uint16_t userLanguage();
std::uint16_t systemUiLanguage();
std::uint16_t systemLanguage();

/// The abbreviation, mostly of three letters; empty when the system does not know the language.
Text languageAbbreviation(std::uint16_t language);

/// The first installed language for which `matches` returns true; 0 when it does for none.
std::uint16_t findInstalledLanguage(bool (*matches)(std::uint16_t language, void* context), void* context);

/// Lets the system's own controls follow a language.
void setControlsLanguage(std::uint16_t language) noexcept;

}  // namespace Oxa_1_1::platform
