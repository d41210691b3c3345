// Spellings that only this system has.

#include <gtest/gtest.h>

#include <sys/stat.h>

#include "base/platform/files/files.h"
#include "base/platform/files/new_items.h"
#include "base/platform/files/system_path.h"
#include "base/platform/system/last_error.h"
#include "base/platform/windows/files/system_names.h"
#include "base/platform/windows/windows_api.h"
#include "tests/platform/temporary_folder.h"

namespace Oxa_1_1::platform
{

namespace
{

TEST(WindowsPaths, LongPrefixAndLength)
{
    const test::TemporaryFolder folder;
    Text deep = L"\\\\?\\" + (folder / "");
    if (deep.ends_with(L'\\')) deep.pop_back();
    for (int i = 0; i < 5; ++i)
    {
        deep.append(L"\\").append(Text(100, L'a'));
        ASSERT_TRUE(createFolder(deep)) << i;
    }
    ASSERT_GT(deep.size(), MAX_PATH);
    const Text file = deep + L"\\file";
    EXPECT_EQ(touchFile(file), Touch::CREATED);
    EXPECT_TRUE(copyFile(file, deep + L"\\copy", true, {}));
    EXPECT_TRUE(renameFile(file, deep + L"\\renamed"));
    EXPECT_EQ(readInformation(deep + L"\\copy")->size, 0u);
    EXPECT_TRUE(canOpen(deep, true, false, FOLDER));
    EXPECT_TRUE(deleteFile(deep + L"\\copy"));
    int entries = 0;
    auto reader = openFolder(deep + L"\\");
    for (FolderEntry entry; reader->next(entry);) ++entries;
    reader.reset();
    EXPECT_EQ(entries, 1);
    EXPECT_TRUE(deleteFile(deep + L"\\renamed"));
    for (int i = 0; i < 5; ++i, deep.resize(deep.rfind(L'\\'))) EXPECT_TRUE(removeFolder(deep));
}

TEST(WindowsPaths, AreMarkedWhenTheyAreLong)
{
    const Text name(150, L'a');
    const Text current = currentFolder(0);
    const Text rest = name + L"\\" + name;
    const std::pair<Text, Text> cases[]{{L"C:\\a", L"C:\\a"},
                                        {L"a\\..\\b", L"a\\..\\b"},
                                        {L"\\\\?\\C:\\" + name, L"\\\\?\\C:\\" + name},
                                        {L"C:\\" + rest, L"\\\\?\\C:\\" + rest},
                                        {L"\\\\server\\share\\" + rest, L"\\\\?\\UNC\\server\\share\\" + rest},
                                        {rest + L"\\..\\" + rest, L"\\\\?\\" + current + L"\\" + name + L"\\" + rest},
                                        // The mark would take the root of the current drive for a name.
                                        {L"\\\\?\\\\windows\\", L"\\windows\\"},
                                        {L"\\\\?\\\\" + rest, L"\\\\?\\" + current.substr(0, 3) + rest},
                                        {L"\\\\?\\Volume{0}\\a", L"\\\\?\\Volume{0}\\a"}};
    for (const auto& [path, expected] : cases) EXPECT_EQ(pathForSystem(path), expected);
}

TEST(WindowsPaths, OfDevicesAreNotMade)
{
    const test::TemporaryFolder folder;
    const Text place = L"\\\\?\\" + (folder / "");
    for (const wchar_t* const name : {L"CON", L"com1.txt", L"nul .a", L"LPT\u00B2", L"conin$"})
    {
        EXPECT_EQ(touchFile(place + name), Touch::FAILED) << name;
        EXPECT_FALSE(createFolder(place + name + L"\\"));
        EXPECT_FALSE(createPrivateFile(name));
        EXPECT_EQ(lastError(), 1200u);
        std::ofstream stream;
        openStream(stream, place + name, std::ios_base::out);
        EXPECT_FALSE(stream);
    }
    for (const wchar_t* const name : {L"CONSOLE", L"COM0", L"COM10", L"aux_", L"a.con"})
        EXPECT_EQ(touchFile(place + name), Touch::CREATED) << name;
    EXPECT_FALSE(renameFile(place + L"COM0", place + L"COM1"));
    EXPECT_FALSE(copyFile(place + L"COM0", place + L"COM1", false, {}));
}

TEST(WindowsPaths, OfAnyLengthAreOpenedAndAsked)
{
    const test::TemporaryFolder folder;
    Text deep = (folder / "");
    if (deep.ends_with(L'\\')) deep.pop_back();
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(createFolder(deep += L'\\' + Text(100, L'a')));
    const Text file = deep + L"\\file";
    for (const auto mode : {std::ios_base::out, std::ios_base::app, std::ios_base::out | std::ios_base::binary})
    {
        std::ofstream stream;
        openStream(stream, file, mode | std::ios_base::out);
        stream << "a\n";
        stream.close();
        EXPECT_TRUE(stream);
        EXPECT_EQ(readInformation(file)->size, mode == std::ios_base::out ? 3u : mode == std::ios_base::app ? 6u : 2u);
    }
    std::ifstream stream;
    openStream(stream, file, std::ios_base::in | std::ios_base::binary);
    std::string text;
    EXPECT_TRUE(std::getline(stream, text) && text == "a");
    struct _stat64i32 status;
    ASSERT_TRUE(statFile(file, status));
    EXPECT_EQ(status.st_size, 2);
    EXPECT_EQ(status.st_mode, _S_IFREG | 0666);
    EXPECT_TRUE(statFile(deep, status) && (status.st_mode & _S_IFDIR) != 0);
    EXPECT_FALSE(isEmptyFolder(deep));
    EXPECT_FALSE(statFile(deep + L"\\missing", status));
}

TEST(WindowsPaths, Drives)
{
    const Text current = currentFolder(0);
    ASSERT_EQ(current.at(1), L':');
    EXPECT_EQ(currentFolder((current[0] & ~0x20) - L'A' + 1), current);
    EXPECT_EQ(currentFolder(3).substr(0, 3), L"C:\\");
    EXPECT_EQ(currentFolder(1), L"");
    EXPECT_EQ(lastError(), 15u);
    EXPECT_FALSE(readAttributes(L"A:\\none\\file"));
    EXPECT_EQ(lastError(), 3u);
    EXPECT_NE(openFolder(current.substr(0, 3)), nullptr);
    EXPECT_NE(openFolder(current.substr(0, 2)), nullptr);
}

}  // namespace

}  // namespace Oxa_1_1::platform
