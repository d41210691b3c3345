// Links that the library makes, and saving through them.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cstdint>

#include "base/filesystem/links.h"
#include "base/filesystem/safe_writer.h"
#include "base/filesystem/temporary.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

mode_t modeOf(const std::filesystem::path& path)
{
    struct stat status = {};
    ::stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

TEST(Links, LeadWhereTheySay)
{
    const TempFolder folder;
    folder.write("folder/file", "content");
    const String folderName = folder.file("folder")->getFullName();
    const struct
    {
        const char* link;
        String target;
        LinkKind kind;
        const char* reads;
    } cases[] = {{"to_file", OXA_TEXT("folder\\file"), LinkKind::File, "content"},
                 {"folder/up", OXA_TEXT("..\\folder\\file"), LinkKind::File, "content"},
                 {"junction", folderName, LinkKind::Junction, nullptr},
                 {"lost", OXA_TEXT("nowhere"), LinkKind::Folder, "missing"}};
    for (const auto& c : cases)
    {
        const auto link = folder.file(c.link);
        ASSERT_TRUE(createLink(*link, c.target, c.kind)) << c.link;
        EXPECT_TRUE(isLink(*link));
        EXPECT_EQ(linkTarget(*link), c.target) << c.link;
        EXPECT_TRUE(c.reads == nullptr || folder.read(c.link) == c.reads) << c.link;
        EXPECT_FALSE(createLink(*link, c.target, c.kind));
    }
    EXPECT_TRUE(isSameOnDisk(*folder.file("to_file"), *folder.file("folder/file")));
    EXPECT_TRUE(isSameOnDisk(*folder.directory("junction"), *folder.directory("folder")));
    EXPECT_FALSE(isSameOnDisk(*folder.file("lost"), *folder.file("lost")));

    folder.write("Case");
    folder.write("case");
    EXPECT_EQ(*folder.file("Case"), *folder.file("case"));
    EXPECT_FALSE(isSameOnDisk(*folder.file("Case"), *folder.file("case")));
}

TEST(SafeWriter, FollowsLinksAndKeepsPermissions)
{
    const TempFolder folder;
    // Whoever reads it would get the end of a file instead.
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(SafeWriter(*folder.file("pipe")).commit());
    EXPECT_TRUE(std::filesystem::is_fifo(folder.path("pipe")));
    folder.write("folder/file", "before");
    ::chmod(folder.path("folder/file").c_str(), 0640);
    ASSERT_TRUE(createLink(*folder.file("link"), OXA_TEXT("folder\\file"), LinkKind::File));
    // What the folder gives to new files is not for this one: one user more, where the disk knows such lists.
    const std::uint32_t list[]{2, 0x70001, 0, 0x60002, 1234, 0x40004, 0, 0x60010, 0, 0x20, 0};
    setxattr(folder.path("folder").c_str(), "system.posix_acl_default", list, sizeof list, 0);
    SafeWriter writer(*folder.file("link"));
    writer.stream() << "after";
    for (const auto& entry : std::filesystem::directory_iterator(folder.path("folder")))
        EXPECT_EQ(modeOf(entry.path()), entry.path().filename() == "file" ? 0640U : 0600U);
    EXPECT_TRUE(writer.commit());
    EXPECT_TRUE(isLink(*folder.file("link")));
    EXPECT_EQ(folder.read("folder/file"), "after");
    EXPECT_EQ(modeOf(folder.path("folder/file")), 0640U);
    EXPECT_EQ(getxattr(folder.path("folder/file").c_str(), "system.posix_acl_access", nullptr, 0), -1);

    ASSERT_TRUE(createLink(*folder.file("lost"), OXA_TEXT("nowhere"), LinkKind::File));
    SafeWriter lost(*folder.file("lost"));
    lost.stream() << "content";
    EXPECT_FALSE(lost.commit());
    EXPECT_TRUE(isLink(*folder.file("lost")));
}

TEST(Temporary, OnlyTheOwnerGetsIn)
{
    const TempFolder folder;
    EXPECT_EQ(modeOf(TemporaryFolder(*folder.directory()).keep()->toPath()), 0700U);
    EXPECT_EQ(modeOf(TemporaryFile(*folder.directory()).keep()->toPath()), 0600U);
}

}  // namespace

}  // namespace Oxa_1_1::test
