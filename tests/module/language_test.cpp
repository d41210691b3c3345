// The choice of the language, and which translation is loaded.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <vector>

#include "base/module/language.h"
#include "base/module/scoped_resource_domain.h"
#include "tests/formats/outside_bytes.h"
#include "tests/module/fixtures/resource.h"
#include "tests/module/loaded_fixture.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1::test
{

namespace
{

namespace fs = std::filesystem;

constexpr unsigned short GERMAN = 0x0407;
constexpr unsigned short AUSTRIAN = 0x0C07;
constexpr unsigned short NEUTRAL_GERMAN = 0x0007;
constexpr unsigned short ENGLISH = BUILT_IN_LANGUAGE;
constexpr unsigned short BRITISH = 0x0809;
constexpr unsigned short FRENCH = 0x040C;
constexpr unsigned short ITALIAN = 0x0410;
constexpr unsigned short UNKNOWN = 0x03FE;

const fs::path SCANNER_FOLDER = OXA_FIXTURES "/scanner";

class Language : public testing::Test
{
   protected:
    ~Language() override
    {
        overrideSystemLanguages({});
        fs::remove_all(OXA_FIXTURES "/copy");
    }

    static void speak(SystemLanguages languages) { overrideSystemLanguages(languages); }

    /// A copy of the fixture, which can be given other translations.
    static fs::path copyFixture()
    {
        const fs::path folder = OXA_FIXTURES "/copy";
        fs::remove_all(folder);
        fs::create_directories(folder);
        fs::copy_file(SCANNER_FOLDER / "scanner.x.module", folder / "scanner.x.module");
        return folder;
    }
};

/// The language that the module gets, and its greeting.
std::pair<unsigned short, String> load(const std::string& folder = "scanner")
{
    const LoadedFixture fixture("scanner", folder);
    if (!fixture.isLoaded()) return {};
    return {GetCurrentLangId(fixture.module()), String::loadFromResource(IDS_GREETING, fixture.module())};
}

const String GERMAN_GREETING = OXA_TEXT("Gr\u00FC\u00DF Gott");
const String ENGLISH_GREETING = OXA_TEXT("Good morning");

std::vector<LanguageOutcome> outcomes(const std::vector<LanguageAttempt>& attempts)
{
    std::vector<LanguageOutcome> result(attempts.size());
    std::transform(attempts.begin(), attempts.end(), result.begin(),
                   [](const auto& attempt) { return attempt.outcome; });
    return result;
}

TEST_F(Language, IsTheFirstOfUserAndSystemThatHasATranslation)
{
    using enum LanguageOutcome;
    struct Case
    {
        SystemLanguages languages;
        unsigned short taken;
        std::vector<LanguageOutcome> outcomes;
    };
    const std::vector<Case> cases = {
        {{ENGLISH, ENGLISH, ENGLISH, ENGLISH}, ANY_LANGUAGE, {BUILT_IN}},
        {{GERMAN, ENGLISH, ENGLISH, ENGLISH}, GERMAN, {CHOSEN}},
        {{ENGLISH, GERMAN, GERMAN, GERMAN}, ANY_LANGUAGE, {BUILT_IN}},
        {{ITALIAN, GERMAN, ENGLISH, ENGLISH}, GERMAN, {NO_FILE, NO_FILE, CHOSEN}},
        {{BRITISH, BRITISH, GERMAN, ENGLISH}, GERMAN, {NO_FILE, NO_FILE, REPEATED, CHOSEN}},
        {{ITALIAN, UNKNOWN, ITALIAN, GERMAN}, GERMAN, {NO_FILE, NO_FILE, NO_ABBREVIATION, NO_FILE, NO_FILE, CHOSEN}},
        {{AUSTRIAN, GERMAN, ENGLISH, ENGLISH}, NEUTRAL_GERMAN, {NO_FILE, CHOSEN}},
        {{FRENCH, GERMAN, ENGLISH, ENGLISH}, ANY_LANGUAGE, {OTHER_VERSION}},
        {{ITALIAN, ITALIAN, ITALIAN, ITALIAN},
         ANY_LANGUAGE,
         {NO_FILE, NO_FILE, REPEATED, REPEATED, REPEATED, BUILT_IN}},
    };
    for (const Case& c : cases)
    {
        speak(c.languages);
        const LoadedFixture fixture("scanner");
        ASSERT_TRUE(fixture.isLoaded());
        const HINSTANCE own = fixture.module().getInstance();
        EXPECT_EQ(outcomes(TraceTranslation(own, ANY_LANGUAGE)), c.outcomes);
        EXPECT_EQ(GetCurrentLangId(fixture.module()), c.taken);
        const String expected = c.taken == ANY_LANGUAGE ? ENGLISH_GREETING : GERMAN_GREETING;
        EXPECT_EQ(String::loadFromResource(IDS_GREETING, fixture.module()), expected);
    }
}

TEST_F(Language, MayBeAskedForAndIsThenTriedFirst)
{
    speak({ENGLISH, ENGLISH, ENGLISH, ENGLISH});
    const LoadedFixture fixture("scanner");
    const HINSTANCE own = fixture.module().getInstance();
    const auto trace = TraceTranslation(own, AUSTRIAN);
    ASSERT_EQ(trace.size(), 2U);
    EXPECT_EQ(trace[1].source, LanguageSource::ARGUMENT);
    EXPECT_EQ(trace[1].abbreviation, OXA_TEXT("DEU"));
    EXPECT_TRUE(trace[1].path.ends_with(OXA_TEXT("\\languages\\DEU.dll")));
    EXPECT_EQ(LoadTranslationDLL(own, ANY_LANGUAGE), own);
    EXPECT_EQ(LoadTranslationDLL(own, FRENCH), own);
    EXPECT_EQ(GetCurrentLangId(fixture.module()), ANY_LANGUAGE);
    FreeTranslationDLL(own, LoadTranslationDLL(own, AUSTRIAN));
    EXPECT_EQ(GetCurrentLangId(fixture.module()), NEUTRAL_GERMAN);
}

TEST_F(Language, EndsWithTheModuleWhichThenSpeaksEnglish)
{
    speak({GERMAN, ENGLISH, ENGLISH, ENGLISH});
    const LoadedFixture fixture("scanner");
    const Module& module = fixture.module();
    EXPECT_EQ(String::loadFromResource(IDS_GREETING, module), GERMAN_GREETING);
    const HINSTANCE translation = module.getResourceInstance();
    reinterpret_cast<void (*)()>(fixture.symbol("detachScanner"))();
    EXPECT_EQ(module.getResourceInstance(), translation);
    EXPECT_EQ(module.loadText(IDS_GREETING), ENGLISH_GREETING);
    EXPECT_EQ(module.loadStringResource(OXA_TEXT("named"), resourceNumber(10)).substr(0, 7), "english");
    const ScopedResourceDomain domain(module);
    EXPECT_EQ(ScopedResourceDomain::current(), module.getInstance());
}

/// Where a translation is damaged, English takes its place, and nothing is read beyond it.
TEST_F(Language, OfADamagedTranslationIsTakenAsFarAsItIsWhole)
{
    speak({GERMAN, ENGLISH, ENGLISH, ENGLISH});
    const fs::path folder = copyFixture() / "languages";
    fs::create_directories(folder);
    const std::string whole = readFile((SCANNER_FOLDER / "languages/DEU.dll").string());
    const auto sizeField = [&](char size) {
        return whole.find(std::string{size, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 0xA00);
    };
    const std::size_t version = whole.find(std::string("\xA4\1\0\0\0\0\0\0\0\0\0\0", 12), 0xA00);
    const std::size_t greeting = whole.find(std::string("G\0r\0\xFC", 5)) - 2;
    struct Case
    {
        std::size_t place;
        std::string bytes;
        const String& greeting;
        const char* named;
    };
    for (const Case& c : {Case{0, "M", GERMAN_GREETING, "deutsch"},
                          Case{greeting, std::string("\0\x80", 2), ENGLISH_GREETING, "deutsch"},
                          Case{sizeField(0x32), std::string("\0\0\x20", 3), ENGLISH_GREETING, "deutsch"},
                          Case{sizeField(7), std::string("\0\0\x20", 3), GERMAN_GREETING, "english"},
                          Case{version, std::string("\0\0\x20", 3), ENGLISH_GREETING, "english"},
                          Case{whole.size(), std::string(), ENGLISH_GREETING, "english"}})
    {
        ASSERT_LE(c.place, whole.size());
        std::string bytes = whole;
        bytes.replace(c.place, c.bytes.size(), c.bytes);
        std::ofstream(folder / "DEU.dll", std::ios::binary) << bytes;
        // The last is whole, but larger than any translation.
        if (c.bytes.empty()) fs::resize_file(folder / "DEU.dll", std::uintmax_t{80} << 20);
        const LoadedFixture fixture("scanner", "copy");
        ASSERT_TRUE(fixture.isLoaded());
        EXPECT_EQ(String::loadFromResource(IDS_GREETING, fixture.module()), c.greeting) << c.place;
        EXPECT_EQ(fixture.module().loadStringResource(OXA_TEXT("named"), resourceNumber(10)).substr(0, 7), c.named);
    }
}

/// A new version of the program is written over the old one, which still runs.
TEST_F(Language, OfATranslationThatIsCutShortMeanwhileIsWhole)
{
    speak({GERMAN, ENGLISH, ENGLISH, ENGLISH});
    const fs::path folder = copyFixture() / "languages";
    fs::create_directories(folder);
    fs::copy_file(SCANNER_FOLDER / "languages/DEU.dll", folder / "DEU.dll");
    const LoadedFixture fixture("scanner", "copy");
    // Refused where the system keeps files that are in use.
    std::error_code refused;
    fs::resize_file(folder / "DEU.dll", 0, refused);
    EXPECT_EQ(String::loadFromResource(IDS_GREETING, fixture.module()), GERMAN_GREETING);
}

TEST_F(Language, StaysTheOneThatWasRecordedFirst)
{
    speak({GERMAN, ENGLISH, ENGLISH, ENGLISH});
    const LoadedFixture other("plain");
    const LoadedFixture fixture("scanner");
    EXPECT_EQ(GetCurrentLangId(other.module()), ANY_LANGUAGE);
    const unsigned short first = GetCurrentLangId(fixture.module());
    EXPECT_NE(first, ANY_LANGUAGE);

    speak({AUSTRIAN, ENGLISH, ENGLISH, ENGLISH});
    const HINSTANCE own = fixture.module().getInstance();
    const HINSTANCE translation = LoadTranslationDLL(own, ANY_LANGUAGE);
    EXPECT_TRUE(translation != nullptr && translation != own);
    FreeTranslationDLL(own, translation);
    EXPECT_EQ(GetCurrentLangId(fixture.module()), first);
}

TEST_F(Language, OfTheSavedSettingStandsAlone)
{
    speak({ENGLISH, ENGLISH, ENGLISH, ENGLISH});
    for (const auto type : {SavedLanguage::Type::TEXT, SavedLanguage::Type::EXPANDABLE_TEXT})
    {
        const SavedLanguage saved("deu", type);
        EXPECT_EQ(GetUsedLangAbbrevs(), std::vector<Text>{OXA_TEXT("deu")});
        EXPECT_EQ(load().second, GERMAN_GREETING);
    }
    speak({GERMAN, GERMAN, GERMAN, GERMAN});
    for (const char* value : {"FRA", "XYZ", "../"})
    {
        const SavedLanguage saved(value, SavedLanguage::Type::TEXT);
        EXPECT_EQ(load().second, ENGLISH_GREETING) << value;
    }
    // What is no text, is empty or too long counts as not saved.
    const SavedLanguage number("00000007", SavedLanguage::Type::NUMBER);
    EXPECT_EQ(load().second, GERMAN_GREETING);
    for (const char* value : {"", "DEUX", "../DEU"})
    {
        const SavedLanguage saved(value, SavedLanguage::Type::TEXT);
        EXPECT_EQ(GetUsedLangAbbrevs(), (std::vector<Text>{OXA_TEXT("DEU"), OXA_TEXT("ENU")})) << value;
    }
}

TEST_F(Language, AbbreviationsAreListedOnce)
{
    speak({AUSTRIAN, GERMAN, UNKNOWN, AUSTRIAN});
    EXPECT_EQ(GetUsedLangAbbrevs(), (std::vector<Text>{OXA_TEXT("DEA"), OXA_TEXT("DEU"), OXA_TEXT("ENU")}));
    speak({ENGLISH, ENGLISH, ENGLISH, ENGLISH});
    EXPECT_EQ(GetUsedLangAbbrevs(), std::vector<Text>{OXA_TEXT("ENU")});
}

TEST_F(Language, FilesAreLookedForBesideTheModuleThenInTheSharedFolder)
{
    speak({GERMAN, ENGLISH, ENGLISH, ENGLISH});
    const fs::path folder = copyFixture();
    EXPECT_EQ(load("copy").second, ENGLISH_GREETING);

    // The product version is missing in the version resource.
    const fs::path shared = fs::path(commonFilesFolder()) / "Fixture Works/Fixtures/internal";
    fs::create_directories(shared);
    fs::copy_file(SCANNER_FOLDER / "languages/DEU.dll", shared / "DEU.dll", fs::copy_options::overwrite_existing);
    EXPECT_EQ(load("copy").second, GERMAN_GREETING);

    // The one beside the module comes first, even if it is of another kind.
    fs::create_directories(folder / "languages");
    std::ofstream(folder / "languages/DEU.dll") << "no library";
    EXPECT_EQ(load("copy").second, ENGLISH_GREETING);
    fs::remove_all(fs::path(commonFilesFolder()) / "Fixture Works");
}

TEST_F(Language, TakesNoPartInTheChoiceOfTheManual)
{
    const fs::path folder = copyFixture();
    const LoadedFixture fixture("scanner", "copy");
    const HINSTANCE own = fixture.module().getInstance();
    EXPECT_EQ(LocateHelpFile(own, GERMAN, true), Text());
    std::ofstream(folder / "scanner.x.pdf") << "manual";
    EXPECT_TRUE(LocateHelpFile(own, GERMAN, true).ends_with(OXA_TEXT("\\copy\\scanner.x.pdf")));
    EXPECT_EQ(LocateHelpFile(own, ANY_LANGUAGE, false), Text());
    std::ofstream(folder / "scanner.x_ClassicUI.pdf") << "manual";
    EXPECT_TRUE(LocateHelpFile(own, 0, false).ends_with(OXA_TEXT("\\copy\\scanner.x_ClassicUI.pdf")));
}

}  // namespace

}  // namespace Oxa_1_1::test
