// Texts that are paths, and texts that are none.

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <unordered_set>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "base/object/uz_class.h"
#include "tests/filesystem/messages.h"

namespace Oxa_1_1::test
{

namespace
{

const String INVALID = OXA_TEXT("The path or file name '%' contains invalid characters.");
const String DRIVE = OXA_TEXT("Invalid drive letter in path '%'.");
const String SHARE = OXA_TEXT("The network path '%' is missing the server and/or share name.");
const String BEYOND = OXA_TEXT("Invalid path '%': parent references go beyond root.");

String filled(const String& format, const String& text)
{
    String message = format;
    message.replace(OXA_TEXT("%"), text);
    return message;
}

struct Parsed
{
    String text;
    bool absolute;
    String root;
    std::vector<String> levels;
};

TEST(PathParsing, TakesDrivesSharesLongAndRelativePaths)
{
    const Parsed cases[] = {
        {OXA_TEXT("c:\\a\\.\\b\\..\\c"), true, OXA_TEXT("C:"), {"a", "c"}},
        {OXA_TEXT("C:/a//b/"), true, OXA_TEXT("C:"), {"a", "b"}},
        {OXA_TEXT("C:\\"), true, OXA_TEXT("C:"), {}},
        {OXA_TEXT("C:"), false, OXA_TEXT("C:"), {}},
        {OXA_TEXT("z:x\\..\\y"), false, OXA_TEXT("Z:"), {"x", "..", "y"}},
        {OXA_TEXT("\\home\\u\\..\\v"), true, String(), {"home", "v"}},
        {OXA_TEXT("/a/./b"), true, String(), {"a", "b"}},
        {OXA_TEXT("..\\x"), false, String(), {"..", "x"}},
        {OXA_TEXT(".\\x\\."), false, String(), {".", "x", "."}},
        {OXA_TEXT(""), false, String(), {}},
        {String(), false, String(), {}},
        {OXA_TEXT("\\\\server\\share"), true, OXA_TEXT("\\\\server\\share"), {}},
        {OXA_TEXT("//srv/sh//d/"), true, OXA_TEXT("\\\\srv\\sh"), {"d"}},
        {OXA_TEXT("\\\\srv\\sh\\a\\..\\b"), true, OXA_TEXT("\\\\srv\\sh"), {"a", "..", "b"}},
        {OXA_TEXT("\\\\?\\C:\\x"), true, OXA_TEXT("C:"), {"x"}},
        {OXA_TEXT("//?/C:/x/../y"), true, OXA_TEXT("C:"), {"y"}},
        {OXA_TEXT("\\\\?\\x"), false, String(), {"x"}},
        {OXA_TEXT("\\\\?\\Volume{12345678-90ab-cdef-1234-567890ABCDEF}\\x\\..\\y"),
         true,
         OXA_TEXT("\\\\?\\Volume{12345678-90ab-cdef-1234-567890ABCDEF}"),
         {"y"}},
        {OXA_TEXT("//?/volume{12345678-90ab-cdef-1234-567890ABCDEF}"),
         true,
         OXA_TEXT("\\\\?\\volume{12345678-90ab-cdef-1234-567890ABCDEF}"),
         {}},
        {OXA_TEXT("\\\\?\\Volume{12}\\x"), false, String(), {"Volume{12}", "x"}},
        {OXA_TEXT("\\\\?\\UNC\\srv\\sh\\d"), true, OXA_TEXT("\\\\srv\\sh"), {"d"}},
        {OXA_TEXT("a. b\\c..d"), false, String(), {"a. b", "c..d"}},
        {OXA_TEXT("\\a\\...x\\ y"), true, String(), {"a", "...x", " y"}},
    };
    for (const Parsed& expected : cases)
    {
        SCOPED_TRACE(testing::PrintToString(expected.text));
        const auto path = OxaWindowsFileSystemDirectory::fromString(expected.text);
        ASSERT_NE(path, nullptr);
        EXPECT_EQ(path->isAbsolute(), expected.absolute);
        EXPECT_TRUE(path->getRoot().compareEquality(expected.root)) << testing::PrintToString(path->getRoot());
        EXPECT_EQ(path->getLevels(), expected.levels);
    }
}

TEST(PathParsing, SaysWhyATextIsNoPath)
{
    struct Refused
    {
        String text;
        String format;
        String named;
    };
    const Refused cases[] = {
        {OXA_TEXT("C:\\.."), BEYOND, OXA_TEXT("C:\\..\\")},
        {OXA_TEXT("\\a\\..\\..\\b"), BEYOND, OXA_TEXT("\\a\\..\\..\\b\\")},
        {OXA_TEXT("\\..\\a*"), INVALID, OXA_TEXT("\\..\\a*")},
        {OXA_TEXT("1:\\x"), DRIVE, OXA_TEXT("1:\\x")},
        {OXA_TEXT("\xE4:\\x"), DRIVE, OXA_TEXT("\xE4:\\x")},
        {OXA_TEXT("ab:c"), INVALID, OXA_TEXT("ab:c")},
        {OXA_TEXT("C:\\a:b"), INVALID, OXA_TEXT("C:\\a:b")},
        {OXA_TEXT(":"), INVALID, OXA_TEXT(":")},
        {OXA_TEXT("a/b*c"), INVALID, OXA_TEXT("a\\b*c")},
        {OXA_TEXT("a\\b \\c"), INVALID, OXA_TEXT("a\\b \\c")},
        {OXA_TEXT("name."), INVALID, OXA_TEXT("name.")},
        {OXA_TEXT("a\\..."), INVALID, OXA_TEXT("a\\...")},
        {OXA_TEXT("a\tb"), INVALID, OXA_TEXT("a\tb")},
        {OXA_TEXT("\\\\server"), SHARE, OXA_TEXT("server")},
        {OXA_TEXT("\\\\"), SHARE, OXA_TEXT("")},
        {OXA_TEXT("\\\\?\\UNC\\srv"), SHARE, OXA_TEXT("srv\\\\")},
        {OXA_TEXT("\\\\srv\\s?\\x"), INVALID, OXA_TEXT("srv\\s?\\x")},
        {OXA_TEXT("\\\\?\\unc\\srv\\s?"), INVALID, OXA_TEXT("unc\\srv\\s?")},
    };
    Messages messages;
    for (const Refused& refused : cases)
    {
        SCOPED_TRACE(testing::PrintToString(refused.text));
        EXPECT_EQ(OxaWindowsFileSystemDirectory::fromString(refused.text), nullptr);
        EXPECT_EQ(messages.take(), Texts{filled(refused.format, refused.named)});
    }
    EXPECT_EQ(OxaWindowsFileSystemDirectory::fromString(literal(OXA_TEXT("a\0b"))), nullptr);
    for (const Char c : TextView(OXA_TEXT("*?<>:\"|\x01\x1F")))
    {
        const String name = OXA_TEXT("abc") + String(c, 1);
        EXPECT_EQ(OxaWindowsFileSystemDirectory::fromString(name), nullptr);
        EXPECT_EQ(OxaWindowsFileSystemFile::fromString(name), nullptr);
    }
}

TEST(PathParsing, SplitsFilesFromTheirFolders)
{
    struct Split
    {
        String text;
        String directory;
        String baseName;
        String extension;
    };
    const Split cases[] = {
        {OXA_TEXT("C:\\a\\archive.tar.gz"), OXA_TEXT("C:\\a\\"), "archive.tar", "gz"},
        {OXA_TEXT("a/b\\c"), OXA_TEXT("a\\b\\"), "c", ""},
        {OXA_TEXT("c:name.x"), OXA_TEXT("C:"), "name", "x"},
        {OXA_TEXT(".profile"), OXA_TEXT(".\\"), "", "profile"},
        {OXA_TEXT("\\\\srv\\sh\\f"), OXA_TEXT("\\\\srv\\sh\\"), "f", ""},
        {OXA_TEXT("C:\\name\\"), OXA_TEXT("C:\\"), "name", ""},
    };
    for (const Split& expected : cases)
    {
        SCOPED_TRACE(testing::PrintToString(expected.text));
        const auto file = File::fromString(expected.text);
        ASSERT_NE(file, nullptr);
        EXPECT_EQ(file->getDirectory()->getFullName(), expected.directory);
        EXPECT_EQ(file->getBaseName(), expected.baseName);
        EXPECT_TRUE(file->getExtension().compareEquality(expected.extension));
    }
    for (const Char* const text : {OXA_TEXT(""), OXA_TEXT("\\"), OXA_TEXT("."), OXA_TEXT("a\\.."), OXA_TEXT("a\\\\"),
                                   OXA_TEXT("C:"), OXA_TEXT("\\\\srv\\x"), OXA_TEXT("C:\\..\\f"), OXA_TEXT("f.")})
        EXPECT_EQ(File::fromString(text), nullptr) << String(text).stringUTF8();
    const auto folder = Directory::fromString("C:\\a");
    EXPECT_EQ(File::fromString(*folder, "x.y")->getFullName(), "C:\\a\\x.y");
    EXPECT_EQ(File::fromString(*folder, "b\\x"), nullptr);
    EXPECT_EQ(File::fromString(*folder, ".."), nullptr);
}

/// Takes texts that begin with "odd!" as relative paths.
class OddCreator final : public File::ImplCreator
{
   public:
    std::unique_ptr<IFileImpl> create(const Directory&, const String&) const override { return nullptr; }
    std::unique_ptr<IFileImpl> create(const String& path) const override
    {
        ++calls;
        return path.startsWith("odd|") ? OxaWindowsFileSystemFile::fromString(path.substr(4)) : nullptr;
    }
    mutable int calls = 0;
};

TEST(Registry, AsksItsCreatorsInTheirOrder)
{
    const auto creator = std::make_shared<OddCreator>();
    const auto before = File::creators.size();
    EXPECT_EQ(File::fromString("odd|name"), nullptr);
    EXPECT_TRUE(File::registerImplCreator(creator));
    EXPECT_FALSE(File::registerImplCreator(creator));
    EXPECT_EQ(File::creators.size(), before + 1);
    EXPECT_EQ(File::fromString("odd|name")->getName(), "name");
    EXPECT_EQ(File::fromString("C:\\name")->getName(), "name");
    EXPECT_EQ(creator->calls, 1);
    EXPECT_TRUE(File::unregisterImplCreator(creator));
    EXPECT_FALSE(File::unregisterImplCreator(creator));
    EXPECT_EQ(File::creators.size(), before);

    const auto nothing = std::make_shared<const Directory::ImplCreator>();
    EXPECT_TRUE(Directory::registerImplCreator(nothing));
    EXPECT_FALSE(Directory::registerImplCreator(nothing));
    EXPECT_NE(Directory::fromString("a"), nullptr);
    EXPECT_THROW(Directory::fromString("a*"), std::bad_function_call);
    EXPECT_TRUE(Directory::unregisterImplCreator(nothing));
    EXPECT_FALSE(Directory::unregisterImplCreator(nothing));
}

TEST(FileSystemItem, HasRecordsOfItsClasses)
{
    const auto file = File::fromString("a");
    const auto directory = Directory::fromString("a");
    EXPECT_EQ(file->getClassType(), File::Class());
    EXPECT_EQ(directory->getClassType(), Directory::Class());
    EXPECT_EQ(File::Class()->base, FileSystemItem::Class());
    EXPECT_EQ(Directory::Class()->base, FileSystemItem::Class());
    EXPECT_EQ(FileSystemItem::Class()->base, nullptr);
    EXPECT_EQ(String(File::Class()->name), "File");
    EXPECT_EQ(String(Directory::Class()->name), "Directory");
    EXPECT_EQ(String(FileSystemItem::Class()->name), "FileSystemItem");
}

TEST(FileSystemItem, CopiesAreIndependent)
{
    const auto file = File::fromString("C:\\a\\b.txt");
    File copy = *file;
    copy.setName("c.d");
    EXPECT_EQ(file->getFullName(), "C:\\a\\b.txt");
    EXPECT_EQ(copy.getFullName(), "C:\\a\\c.d");
    copy = *file;
    EXPECT_EQ(copy, *file);

    const auto directory = Directory::fromString("C:\\a\\b");
    Directory other = *directory;
    other.setName("c");
    EXPECT_EQ(directory->getName(), "b");
    EXPECT_EQ(other.getFullName(), "C:\\a\\c\\");
}

TEST(FileSystemItem, IsWrittenHashedAndHandedToTheStandardLibrary)
{
    std::ostringstream stream;
    stream << *File::fromString("C:/a/b.txt");
    EXPECT_EQ(stream.str(), "C:\\a\\b.txt");

    std::unordered_set<File> files;
    files.insert(*File::fromString("C:\\a\\b.txt"));
    EXPECT_TRUE(files.contains(*File::fromString("c:\\A\\x\\..\\B.TXT")));
    EXPECT_FALSE(files.contains(*File::fromString("C:\\a\\b.tx")));
    const auto relative = File::fromString("some.file");
    EXPECT_EQ(std::hash<File>()(*relative), std::hash<File>()(*relative->makeAbsolute()));

    const auto folder = std::filesystem::temp_directory_path();
    const auto directory = Directory::fromPath(folder);
    ASSERT_NE(directory, nullptr);
    EXPECT_TRUE(directory->exists());
    EXPECT_TRUE(std::filesystem::is_directory(directory->toPath().parent_path()));
    EXPECT_EQ(*Directory::fromPath(directory->toPath()), *directory);
    const auto file = File::fromPath(folder / "x.y");
    EXPECT_EQ(file->getName(), "x.y");
    EXPECT_EQ(file->toPath().filename(), "x.y");
    EXPECT_EQ(Directory::fromUTF8(directory->getFullName().stringUTF8())->getFullName(), directory->getFullName());
    EXPECT_EQ(Directory::fromUTF8(std::string("a\0b", 3)), nullptr);
}

}  // namespace

}  // namespace Oxa_1_1::test
