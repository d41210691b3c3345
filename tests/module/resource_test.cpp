// Resources of modules: where they are found, in which language, and as what.

#include <gtest/gtest.h>

#include <istream>
#include <iterator>
#include <string>

#include "base/module/language.h"
#include "base/module/resource_file.h"
#include "base/module/scoped_resource_domain.h"
#include "base/module/string_resource.h"
#include "tests/formats/outside_bytes.h"
#include "tests/module/fixtures/resource.h"
#include "tests/module/loaded_fixture.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1::test
{

namespace
{

const Char* const RAW_DATA = resourceNumber(10);

constexpr unsigned short GERMAN = 0x0407;
constexpr DWORD NEUTRAL_GERMAN = 0x0007;
constexpr DWORD AUSTRIAN = 0x0C07;
constexpr DWORD ENGLISH = 0x0409;
constexpr DWORD FRENCH = 0x040C;

/// The fixture, loaded while the user's language is the given one.
class Resources : public testing::Test
{
   protected:
    ~Resources() override { overrideSystemLanguages({}); }

    static void speak(unsigned short language)
    {
        overrideSystemLanguages(SystemLanguages{language, language, BUILT_IN_LANGUAGE, BUILT_IN_LANGUAGE});
    }
};

std::string bytesOf(std::pair<void*, DWORD> resource)
{
    return {static_cast<const char*>(resource.first), resource.second};
}

TEST_F(Resources, AreFoundByNameAndNumberWithoutRegardToCase)
{
    speak(BUILT_IN_LANGUAGE);
    const LoadedFixture fixture("scanner");
    const Module& module = fixture.module();
    const std::string named("english\r\n\0\x80", 11);
    EXPECT_EQ(bytesOf(module.getResource(OXA_TEXT("NaMeD"), RAW_DATA)), named);
    EXPECT_EQ(module.loadStringResource(OXA_TEXT("named"), RAW_DATA), named);
    EXPECT_EQ(bytesOf(module.getResource(IDB_ENGLISH_ONLY, RAW_DATA)), "english only");
    EXPECT_EQ(bytesOf(module.getResource(0x10000 + IDB_ENGLISH_ONLY, RAW_DATA)), "english only");
    for (const Char* const name : {OXA_TEXT("#8"), OXA_TEXT("# 8"), OXA_TEXT("#+8x"), OXA_TEXT("#4294967304")})
        EXPECT_EQ(bytesOf(module.getResource(String(name), OXA_TEXT("#10"))), "english only") << String(name);
    for (const Char* const name : {OXA_TEXT("#65544"), OXA_TEXT("#-8"), OXA_TEXT("#x8"), OXA_TEXT("#")})
        EXPECT_EQ(module.findResource(String(name), OXA_TEXT("#10")), nullptr) << String(name);
    EXPECT_EQ(module.resourceBytes(IDB_ENGLISH_ONLY, RAW_DATA).size(), 12U);
    EXPECT_TRUE(module.resourceBytes(OXA_TEXT("unknown"), RAW_DATA).empty());
    EXPECT_EQ(bytesOf(module.getResource(OXA_TEXT("Resource.H"), OXA_TEXT("metadata"))).substr(0, 23),
              "//{{NO_DEPENDENCIES}}\n/");

    EXPECT_NE(module.findResource(IDB_EMPTY, RAW_DATA), nullptr);
    EXPECT_EQ(module.getResource(IDB_EMPTY, RAW_DATA), (std::pair<void*, DWORD>()));
    EXPECT_EQ(module.loadResource(IDB_EMPTY, RAW_DATA), nullptr);
    for (const String& name : {String(OXA_TEXT("unknown")), String(), String::EMPTY})
    {
        EXPECT_EQ(module.findResource(name, RAW_DATA), nullptr);
        EXPECT_EQ(module.loadResource(name, RAW_DATA), nullptr);
    }
    EXPECT_EQ(module.findResource(0, RAW_DATA), nullptr);
    EXPECT_EQ(module.findResource(IDB_FLAG, OXA_TEXT("no type")), nullptr);
}

TEST_F(Resources, AreStreamsThatSeek)
{
    const LoadedFixture fixture("scanner");
    const auto stream = fixture.module().loadResource(IDB_ENGLISH_ONLY, RAW_DATA);
    ASSERT_NE(stream, nullptr);
    stream->seekg(-4, std::ios::end);
    EXPECT_EQ(stream->tellg(), 8);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(*stream), {}), "only");
    stream->clear();
    stream->seekg(13);
    EXPECT_TRUE(stream->fail());
}

TEST_F(Resources, ComeFromTheTranslationAndElseFromTheModule)
{
    speak(GERMAN);
    const LoadedFixture fixture("scanner");
    const Module& module = fixture.module();
    ASSERT_EQ(GetCurrentLangId(module), GERMAN);
    const HINSTANCE own = module.findResource(OXA_TEXT("named"), RAW_DATA, false);
    const HINSTANCE translation = module.findResource(OXA_TEXT("named"), RAW_DATA, true);
    EXPECT_NE(own, nullptr);
    EXPECT_NE(translation, own);
    EXPECT_EQ(module.findResource(IDB_ENGLISH_ONLY, RAW_DATA, true), own);
    EXPECT_EQ(module.loadStringResource(OXA_TEXT("named"), RAW_DATA, true), "deutsch");
    EXPECT_EQ(module.loadStringResource(OXA_TEXT("named"), RAW_DATA, false).substr(0, 7), "english");

    EXPECT_EQ(String::loadFromResource(IDS_GREETING, module), OXA_TEXT("Gr\u00FC\u00DF Gott"));
    EXPECT_EQ(String::loadFromResource(IDS_ENGLISH_ONLY, module), OXA_TEXT("Only in English"));

    const HINSTANCE outside = ScopedResourceDomain::current();
    {
        const ScopedResourceDomain translated(module);
        EXPECT_EQ(ScopedResourceDomain::current(), translation);
        {
            const ScopedResourceDomain untranslated(module, false);
            EXPECT_EQ(ScopedResourceDomain::current(), own);
            const ScopedResourceDomain library;
            EXPECT_EQ(ScopedResourceDomain::current(), getThisModule().getResourceInstance());
        }
        EXPECT_EQ(ScopedResourceDomain::current(), translation);
    }
    EXPECT_EQ(ScopedResourceDomain::current(), outside);
}

TEST_F(Resources, AreTakenInTheWantedLanguage)
{
    speak(BUILT_IN_LANGUAGE);
    const LoadedFixture fixture("scanner");
    const Module& module = fixture.module();
    // Where no language suits, the locale of the thread is told, which is that of the user.
    DWORD threadLocale = FRENCH;
    module.findResource(IDB_FLAG, RAW_DATA, true, &threadLocale);
    const DWORD sortOrder = threadLocale & 0xF0000;

    struct Case
    {
        DWORD wanted;
        const char* bytes;
        DWORD taken;
    };
    // The flag exists in neutral German and in English; French gets what is found without a choice.
    for (const Case& c : {Case{AUSTRIAN, "german", NEUTRAL_GERMAN}, Case{NEUTRAL_GERMAN, "german", NEUTRAL_GERMAN},
                          Case{ENGLISH, "english", ENGLISH}, Case{0x10000 | ENGLISH, "english", ENGLISH}})
    {
        DWORD lcid = c.wanted;
        EXPECT_EQ(bytesOf(module.getResource(IDB_FLAG, RAW_DATA, true, &lcid)), c.bytes) << c.wanted;
        EXPECT_EQ(lcid, sortOrder | c.taken) << c.wanted;
    }
    DWORD lcid = FRENCH;
    EXPECT_EQ(bytesOf(module.getResource(IDB_FLAG, RAW_DATA, true, &lcid)),
              bytesOf(module.getResource(IDB_FLAG, RAW_DATA)));
    EXPECT_EQ(lcid, threadLocale) << "the locale of the thread was left changed";
    lcid = FRENCH;
    EXPECT_EQ(bytesOf(module.getResource(IDB_ENGLISH_ONLY, RAW_DATA, true, &lcid)), "english only");
    EXPECT_EQ(lcid & 0xFFFF, ENGLISH);
}

TEST_F(Resources, IncludeTextsByNumber)
{
    speak(BUILT_IN_LANGUAGE);
    const LoadedFixture fixture("scanner");
    const Module& module = fixture.module();
    EXPECT_EQ(String::loadFromResource(IDS_GREETING, module), OXA_TEXT("Good morning"));
    EXPECT_EQ(String::loadFromResource(IDS_LAST_OF_BLOCK, module), OXA_TEXT("fifteen"));
    EXPECT_EQ(String::loadFromResource(IDS_FIRST_OF_BLOCK, module), OXA_TEXT("zero"));
    for (const unsigned int missing :
         {static_cast<unsigned int>(IDS_EMPTY), 104U, 0U, 65535U, 65536U + IDS_GREETING, 0xFFFFFFFFU})
    {
        EXPECT_EQ(String::loadFromResource(missing, module), OXA_TEXT("Error loading string resource!"));
        EXPECT_FALSE(module.loadText(missing));
    }
}

TEST(ResourceFile, ListsWhatAFileHolds)
{
    const std::string bytes = readData("resources/sample.dll");
    const auto resources = listResources(asBytes(bytes));
    ASSERT_TRUE(resources);
    std::string lines;
    for (const ResourceInfo& resource : *resources)
        lines += (resource.type + OXA_TEXT(' ') + resource.name + OXA_TEXT(' ')
                  << resource.language << OXA_TEXT(' ') << resource.size << OXA_TEXT('\n'))
                     .stringUTF8();
    for (const char* const line : {"#6 #2 1031 48\n", "#10 #7 0 4\n", "#10 SAMPLE 0 9\n", "SHAPE #5 0 9\n"})
        EXPECT_NE(lines.find(line), std::string::npos) << line << lines;
    EXPECT_FALSE(listResources({}));
}

TEST_F(Resources, AreNamedByTextsThatLoadOnlyWhatWasMadeNil)
{
    const LoadedFixture fixture("scanner");
    const StringResource greeting(IDS_GREETING, fixture.module());
    const String& text = greeting;
    EXPECT_TRUE(text.compareEquality(String::EMPTY));
    StringResource copy;
    EXPECT_TRUE(static_cast<const String&>(copy).isEmpty());
    copy = greeting;
    EXPECT_TRUE(static_cast<const String&>(copy).compareEquality(String::EMPTY));
}

}  // namespace

}  // namespace Oxa_1_1::test
