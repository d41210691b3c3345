#include "examples/foldertool/module_report.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "base/module/language.h"
#include "base/module/module_entry.h"
#include "base/module/symbol_table.h"
#include "examples/foldertool/text.h"

namespace foldertool
{

using namespace Oxa_1_1;

namespace
{

/// The four numbers in the module's version resource.
std::string versionOf(const Module& module)
{
    constexpr unsigned int VERSION_TYPE = 16;
    constexpr std::size_t FIXED_PART = 40;
    constexpr std::uint32_t SIGNATURE = 0xFEEF04BD;
    // The signature, the version of the layout, and the numbers, two in each.
    std::array<std::uint32_t, 4> fixed{};
    const auto [bytes, size] = module.getResource(1U, resourceNumber(VERSION_TYPE), false);
    if (size < FIXED_PART + sizeof fixed) return "-";
    std::memcpy(fixed.data(), static_cast<const char*>(bytes) + FIXED_PART, sizeof fixed);
    if (fixed[0] != SIGNATURE) return "-";
    String version;
    version << (fixed[2] >> 16) << OXA_TEXT('.') << (fixed[2] & 0xFFFF) << OXA_TEXT('.') << (fixed[3] >> 16)
            << OXA_TEXT('.') << (fixed[3] & 0xFFFF);
    return version.stringUTF8();
}

std::string abbreviationOf(const LanguageAttempt& attempt)
{
    return attempt.langId == BUILT_IN_LANGUAGE ? "ENU" : String(attempt.abbreviation).stringUTF8();
}

std::string reasonOf(const LanguageAttempt& attempt)
{
    switch (attempt.source)
    {
        case LanguageSource::COMMAND_LINE:
            return text(IDS_BY_COMMAND_LINE);
        case LanguageSource::SAVED_SETTING:
            return text(IDS_BY_SETTING);
        case LanguageSource::USER_INTERFACE:
        case LanguageSource::USER:
            return text(IDS_BY_USER);
        case LanguageSource::SYSTEM_INTERFACE:
        case LanguageSource::SYSTEM:
            return text(IDS_BY_SYSTEM);
        default:
            return text(IDS_BUILT_IN);
    }
}

struct Language
{
    std::string name;
    std::string reason;
};

/// The language of the module, and why it speaks that one.
Language languageOf(const Module& module)
{
    const std::vector<LanguageAttempt> attempts = TraceTranslation(module.getInstance(), ANY_LANGUAGE);
    if (attempts.empty()) return {"ENU", text(IDS_BUILT_IN)};
    const bool isTranslated = GetCurrentLangId(module) != ANY_LANGUAGE;
    const bool isWanted = isTranslated || attempts.front().langId == BUILT_IN_LANGUAGE;
    if (isWanted) return {abbreviationOf(attempts.back()), reasonOf(attempts.back())};
    return {"ENU", text(IDS_NO_TRANSLATION, {abbreviationOf(attempts.front())})};
}

}  // namespace

std::vector<std::string> moduleLines()
{
    std::vector<std::string> lines;
    for (const Module& module : Module::all())
    {
        const Language language = languageOf(module);
        lines.push_back(left(module.getModuleName().stringUTF8(), 16) + left(versionOf(module), 10) +
                        left(language.name, 5) + left(language.reason, 24) +
                        right(counted(IDS_ONE_SYMBOL, module.getResourceSymbols().size()), 12));
    }
    return lines;
}

std::string ownVersion() { return versionOf(ownModule()); }

}  // namespace foldertool
