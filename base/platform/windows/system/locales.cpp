#include "base/platform/system/locales.h"

#include <array>

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

namespace
{

/// What the two nested enumerations look for.
struct Search
{
    bool (*matches)(std::uint16_t, void*);
    void* context;
    std::uint16_t found = 0;
};

BOOL CALLBACK visitLocale(LGRPID, LCID locale, LPWSTR, LONG_PTR context)
{
    auto& search = *reinterpret_cast<Search*>(context);
    const auto language = static_cast<std::uint16_t>(LANGIDFROMLCID(locale));
    if (!search.matches(language, search.context)) return TRUE;
    search.found = language;
    return FALSE;
}

BOOL CALLBACK visitGroup(LGRPID group, LPWSTR, LPWSTR, DWORD, LONG_PTR context)
{
    EnumLanguageGroupLocalesW(visitLocale, group, 0, context);
    return reinterpret_cast<Search*>(context)->found == 0 ? TRUE : FALSE;
}

}  // namespace

LCID threadLocale() noexcept { return GetThreadLocale(); }

void setThreadLocale(LCID locale) noexcept { SetThreadLocale(locale); }

std::vector<std::uint16_t> userUiLanguages() { return {GetUserDefaultUILanguage()}; }
std::uint16_t userLanguage() { return GetUserDefaultLangID(); }
std::uint16_t systemUiLanguage() { return GetSystemDefaultUILanguage(); }
std::uint16_t systemLanguage() { return GetSystemDefaultLangID(); }

Text languageAbbreviation(std::uint16_t language)
{
    std::array<wchar_t, 4> buffer{};
    const LCID locale = MAKELCID(language, SORT_DEFAULT);
    if (GetLocaleInfoW(locale, LOCALE_SABBREVLANGNAME, buffer.data(), static_cast<int>(buffer.size())) == 0) return {};
    return buffer.data();
}

std::uint16_t findInstalledLanguage(bool (*matches)(std::uint16_t, void*), void* context)
{
    Search search{matches, context};
    EnumSystemLanguageGroupsW(visitGroup, LGRPID_INSTALLED, reinterpret_cast<LONG_PTR>(&search));
    return search.found;
}

void setControlsLanguage(std::uint16_t language) noexcept
{
    // Loaded for good, and only by programs that are translated.
    const HMODULE controls = LoadLibraryW(L"comctl32.dll");
    if (controls == nullptr) return;
    const auto setLanguage =
        reinterpret_cast<void(WINAPI*)(LANGID)>(reinterpret_cast<void*>(GetProcAddress(controls, "InitMUILanguage")));
    if (setLanguage != nullptr) setLanguage(language);
}

}  // namespace Oxa_1_1::platform
