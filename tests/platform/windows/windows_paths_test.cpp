// Spellings that only this system has.

#include <gtest/gtest.h>

#include "base/platform/files/files.h"
#include "base/platform/system/last_error.h"
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
