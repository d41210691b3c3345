// The resources of real libraries beside what the system finds in them.

#include <cstring>
#include <iterator>

#include "base/formats/version_block.h"
#include "base/platform/windows/windows_api.h"
#include "tests/formats/wine_libraries.h"

namespace Oxa_1_1::formats
{

namespace
{

/// A key as the system takes it.
class SystemKey
{
   public:
    explicit SystemKey(const ResourceKey& key) : m_id(key.id), m_isText(key.isText()), m_name(key.name) {}

    operator const wchar_t*() const { return m_isText ? m_name.c_str() : MAKEINTRESOURCEW(m_id); }

   private:
    std::uint16_t m_id;
    bool m_isText;
    Text m_name;
};

ResourceKey keyOf(const wchar_t* key)
{
    if (IS_INTRESOURCE(key)) return ResourceKey::number(static_cast<unsigned>(reinterpret_cast<ULONG_PTR>(key)));
    return ResourceKey::text(key);
}

using Lines = std::vector<std::string>;

BOOL CALLBACK addLanguage(HMODULE module, const wchar_t* type, const wchar_t* name, WORD language, LONG_PTR lines)
{
    const HRSRC resource = FindResourceExW(module, type, name, language);
    ResourceEntry entry{
        .type = keyOf(type), .name = keyOf(name), .language = language, .bytes = {}, .strings = nullptr};
    entry.bytes = {static_cast<const std::byte*>(LockResource(LoadResource(module, resource))),
                   SizeofResource(module, resource)};
    reinterpret_cast<Lines*>(lines)->push_back(test::describe(entry));
    return TRUE;
}

BOOL CALLBACK addName(HMODULE module, const wchar_t* type, wchar_t* name, LONG_PTR lines)
{
    return EnumResourceLanguagesW(module, type, name, addLanguage, lines);
}

BOOL CALLBACK addType(HMODULE module, wchar_t* type, LONG_PTR lines)
{
    return EnumResourceNamesW(module, type, addName, lines);
}

class SystemResources : public test::WineLibrary
{
   protected:
    void SetUp() override
    {
        WineLibrary::SetUp();
        if (!index) return;
        // Wine has the root of the other system's files on this drive.
        m_module = LoadLibraryExW(text::decodeUtf8("Z:" + path()).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        ASSERT_NE(m_module, nullptr);
    }

    void TearDown() override
    {
        if (m_module != nullptr) FreeLibrary(m_module);
    }

    std::span<const std::byte> bytesOf(HRSRC resource) const
    {
        if (resource == nullptr) return {};
        return {static_cast<const std::byte*>(LockResource(LoadResource(m_module, resource))),
                SizeofResource(m_module, resource)};
    }

    HMODULE m_module = nullptr;
};

INSTANTIATE_TEST_SUITE_P(Wine, SystemResources, test::wineLibraries(), test::nameOfLibrary);

TEST_P(SystemResources, Entries)
{
    Lines expected;
    ASSERT_TRUE(EnumResourceTypesW(m_module, addType, reinterpret_cast<LONG_PTR>(&expected)));
    Lines entries = test::describe(index->entries());
    std::ranges::sort(expected);
    std::ranges::sort(entries);
    EXPECT_GT(entries.size(), 20u);
    EXPECT_EQ(entries, expected);
}

TEST_P(SystemResources, Bytes)
{
    for (const ResourceEntry& entry : index->entries())
    {
        const auto expected =
            bytesOf(FindResourceExW(m_module, SystemKey(entry.type), SystemKey(entry.name), entry.language));
        ASSERT_TRUE(std::ranges::equal(entry.bytes, expected)) << test::describe(entry);
    }
}

/// The system reads them in the language of the user.
TEST_P(SystemResources, Strings)
{
    for (unsigned first = 0; first < 0x10000; first += 16)
    {
        const auto expected = bytesOf(FindResourceW(m_module, MAKEINTRESOURCEW(first / 16 + 1), MAKEINTRESOURCEW(6)));
        const auto block = index->stringBlock(first);
        ASSERT_EQ(block.empty(), expected.empty()) << first;
        if (block.empty()) continue;
        const auto language = std::ranges::find_if(
            block, [&](const ResourceEntry& entry) { return std::ranges::equal(entry.bytes, expected); });
        ASSERT_NE(language, block.end()) << first;
        for (unsigned id = first; id < first + 16; ++id)
        {
            wchar_t text[4096];
            const int length = LoadStringW(m_module, id, text, std::size(text));
            ASSERT_EQ(ResourceIndex::stringAt(*language, id), TextView(text, static_cast<std::size_t>(length))) << id;
        }
    }
}

// ---- Versions.

/// The bytes at a path as the system finds them, texts without their zero.
std::optional<Text> systemValue(const std::vector<std::byte>& block, const Text& query, bool isText)
{
    void* value = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(block.data(), query.c_str(), &value, &length)) return std::nullopt;
    if (!isText) return test::textOf({static_cast<const std::byte*>(value), length});
    const TextView text(static_cast<const wchar_t*>(value), length);
    return Text(text.substr(0, text.find(L'\0')));
}

void compareVersions(const ResourceEntry& version)
{
    // The system's function takes blocks with room behind them.
    std::vector<std::byte> block(version.bytes.begin(), version.bytes.end());
    block.resize(3 * block.size());
    const auto expectEqual = [&](const Text& query, bool isText)
    {
        const auto value = queryVersionValue(version.bytes, query);
        const auto expected = systemValue(block, query, isText);
        EXPECT_EQ(value ? std::optional(test::textOf(*value)) : std::nullopt, expected) << text::encodeUtf8(query);
        return expected.has_value();
    };
    EXPECT_TRUE(expectEqual(L"\\", false));
    expectEqual(L"\\VarFileInfo\\Translation", false);
    expectEqual(L"\\VarFileInfo\\Nothing", false);
    int found = 0;
    for (const Text table : {L"040904E4", L"040904b0", L"000004b0"})
        for (const Text name : {L"CompanyName", L"FileDescription", L"FILEVERSION", L"InternalName", L"LegalCopyright",
                                L"OriginalFilename", L"ProductName", L"ProductVersion", L"OLESelfRegister", L"Nothing"})
            found += expectEqual(L"\\StringFileInfo\\" + table + L"\\" + name, true) ? 1 : 0;
    EXPECT_GE(found, 3);
}

TEST_P(SystemResources, Versions)
{
    const auto versions = index->find(ResourceKey::number(16), ResourceKey::number(1));
    EXPECT_FALSE(versions.empty());
    for (const ResourceEntry& version : versions) compareVersions(version);
}

TEST(SystemVersion, Sample)
{
    const std::string file = test::readData("resources/sample.res");
    const auto index = ResourceIndex::fromRes(test::asBytes(file));
    ASSERT_TRUE(index);
    compareVersions(index->find(ResourceKey::number(16), ResourceKey::number(1)).front());
}

}  // namespace

}  // namespace Oxa_1_1::formats
