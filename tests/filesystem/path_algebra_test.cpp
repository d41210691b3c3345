// Names and derived paths.

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <thread>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "tests/filesystem/messages.h"

namespace Oxa_1_1::test
{

namespace
{

std::shared_ptr<Directory> folder(const String& path) { return Directory::fromString(path); }

/// "none" for an empty pointer.
template <class Item>
String nameOf(const std::shared_ptr<Item>& item)
{
    return item != nullptr ? item->getFullName() : String(OXA_TEXT("none"));
}

TEST(PathAlgebra, SpellsFoldersInThreeWays)
{
    struct Spelling
    {
        const char* text;
        const char* full;
        const char* longer;
        const char* slashes;
        const char* name;
        const char* baseName;
        const char* extension;
    };
    const Spelling cases[] = {
        {"", ".\\", ".\\", "./", ".", "", ""},
        {"C:\\a\\b.c.d", "C:\\a\\b.c.d\\", "\\\\?\\C:\\a\\b.c.d\\", "C:/a/b.c.d/", "b.c.d", "b.c", "d"},
        {"\\\\srv\\sh\\d", "\\\\srv\\sh\\d\\", "\\\\?\\UNC\\srv\\sh\\d\\", "//srv/sh/d/", "d", "d", ""},
        {"\\a", "\\a\\", "\\\\?\\\\a\\", "/a/", "a", "a", ""},
        {"C:", "C:", "C:", "C:", ".", "", ""},
        {"C:a", "C:a\\", "C:a\\", "C:a/", "a", "a", ""},
        {"C:\\", "C:\\", "\\\\?\\C:\\", "C:/", ".", "", ""},
        {"..", "..\\", "..\\", "../", "..", ".", ""},
    };
    for (const Spelling& expected : cases)
    {
        const auto path = folder(expected.text);
        ASSERT_NE(path, nullptr);
        EXPECT_EQ(path->getFullName(), expected.full);
        EXPECT_EQ(path->getFullNameUnicode(), expected.longer);
        EXPECT_EQ(path->getFullNameUnix(), expected.slashes);
        EXPECT_EQ(path->getName(), expected.name);
        EXPECT_TRUE(path->getBaseName().compareEquality(expected.baseName)) << expected.text;
        EXPECT_TRUE(path->getExtension().compareEquality(expected.extension)) << expected.text;
    }
    const auto file = File::fromString("\\\\srv\\sh\\a.b");
    EXPECT_EQ(file->getFullNameUnicode(), "\\\\?\\UNC\\srv\\sh\\a.b");
    EXPECT_EQ(file->getFullNameUnix(), "//srv/sh/a.b");
    EXPECT_EQ(File::fromString("a.b")->getFullName(), ".\\a.b");
    const auto letter = [](const char* text)
    { return OxaWindowsFileSystemDirectory::fromString(text)->getDriveLetter(); };
    EXPECT_EQ(letter("q:x"), OXA_TEXT('Q'));
    EXPECT_EQ(letter("\\\\a\\b"), 0);
    EXPECT_EQ(letter("\\x"), 0);
}

TEST(PathAlgebra, MakesPathsRelative)
{
    struct Case
    {
        const char* path;
        const char* reference;
        const char* expected;
    };
    const Case cases[] = {
        {"C:\\a\\b\\c", "C:\\a\\x", "..\\b\\c\\"},
        {"C:\\a", "C:\\a", ".\\"},
        {"C:\\A\\b", "c:\\a\\B", ".\\"},
        {"D:\\a", "C:\\a", "D:\\a\\"},
        {"C:\\", "C:\\a\\b", "..\\..\\"},
        {"\\a\\b", "\\", "a\\b\\"},
        // Kept on purpose: only drive letters are compared.
        {"\\\\one\\s\\a\\b", "\\\\two\\t\\a", "b\\"},
    };
    for (const Case& c : cases) EXPECT_EQ(nameOf(folder(c.path)->makeRelative(*folder(c.reference))), c.expected);
    EXPECT_EQ(nameOf(File::fromString("C:\\a\\f.x")->makeRelative(*folder("C:\\b"))), "..\\a\\f.x");
    const auto here = Directory::fromPath(std::filesystem::current_path());
    EXPECT_EQ(nameOf(folder("x\\..\\y")->makeRelative(*here)), "y\\");
    EXPECT_EQ(nameOf(here->makeRelative(*folder("y"))), "..\\");
}

TEST(PathAlgebra, MakesPathsAbsolute)
{
    const auto here = Directory::fromPath(std::filesystem::current_path());
    EXPECT_EQ(nameOf(folder("x\\.\\..\\y")->makeAbsolute()), here->getFullName() + "y\\");
    EXPECT_EQ(nameOf(folder("")->makeAbsolute()), here->getFullName());
    EXPECT_EQ(nameOf(File::fromString("f.x")->makeAbsolute()), here->getFullName() + "f.x");
    EXPECT_EQ(nameOf(folder("C:\\x")->makeAbsolute()), "C:\\x\\");
    const FileSystemItem& item = *here;
    EXPECT_EQ(nameOf(item.makeRelative(*here)), ".\\");

    Messages messages;
    String up;
    for (std::size_t i = 0; i < 100; ++i) up += "..\\";
    EXPECT_EQ(folder(up)->makeAbsolute(), nullptr);
    EXPECT_EQ(messages.take().size(), 1U);
    EXPECT_EQ(folder(up)->makeRelative(*here), nullptr);
    EXPECT_EQ(messages.take().back(), "Failed to get absolute paths of this and the reference directory.");
    EXPECT_EQ(here->makeRelative(*folder(up)), nullptr);
    EXPECT_EQ(messages.take().back(), "Failed to get absolute paths of this and the reference directory.");
    EXPECT_EQ(folder(up)->equals(*here), FileSystemItem::Undetermined);
}

TEST(PathAlgebra, AppendsAndCombines)
{
    Messages messages;
    const auto path = folder("C:\\a");
    EXPECT_EQ(nameOf(path->appendLevel("b c")), "C:\\a\\b c\\");
    EXPECT_EQ(nameOf(path->appendLevel("..")), "C:\\a\\..\\");
    EXPECT_EQ(nameOf(path->appendPath(*folder("..\\x\\.\\y"))), "C:\\x\\y\\");
    EXPECT_EQ(nameOf(path->appendPath(*folder("D:x"))), "C:\\a\\x\\");
    EXPECT_TRUE(messages.take().empty());
    EXPECT_EQ(path->appendLevel("b:c"), nullptr);
    EXPECT_EQ(path->appendLevel(String()), nullptr);
    EXPECT_EQ(messages.take(), (Texts{"The path or file name 'b:c' contains invalid characters.",
                                      "The path or file name '' contains invalid characters."}));
    EXPECT_EQ(path->appendPath(*folder("C:\\x")), nullptr);
    EXPECT_EQ(path->appendPath(*folder("..\\..")), nullptr);
    EXPECT_EQ(messages.take(), (Texts{"The path to be appended must be relative.",
                                      "Invalid path 'C:\\a\\..\\..\\': parent references go beyond root."}));

    EXPECT_EQ(nameOf(path->combine(*folder("D:\\x\\y"))), "C:\\a\\x\\y\\");
    EXPECT_EQ(nameOf(path->combine(*folder("..\\b"))), "C:\\b\\");
    EXPECT_EQ(nameOf(path->combine(*folder("..\\..\\b"))), "C:\\a\\..\\..\\b\\");
    EXPECT_EQ(nameOf(path->combine(*File::fromString("x\\f.g"))), "C:\\a\\x\\f.g");
}

TEST(PathAlgebra, ComparesWithoutCase)
{
    using enum FileSystemItem::ComparisonResult;
    const auto equals = [](const char* a, const char* b) { return folder(a)->equals(*folder(b)); };
    EXPECT_EQ(equals("C:\\A", "c:\\a"), Equal);
    EXPECT_EQ(equals("C:\\a", "C:\\a\\b"), Different);
    EXPECT_EQ(equals("C:\\a", "D:\\a"), Different);
    EXPECT_EQ(equals("C:\\a", "\\a"), Different);
    EXPECT_EQ(equals("a", "A"), Equal);
    EXPECT_EQ(equals("C:\\\xC4", "C:\\\xE4"), Equal);
    const auto here = Directory::fromPath(std::filesystem::current_path());
    EXPECT_EQ(folder("x")->equals(*here->appendLevel("X")), Equal);
    EXPECT_EQ(here->appendLevel("x")->equals(*folder("y")), Different);

    const auto file = File::fromString("C:\\a\\b.c");
    EXPECT_EQ(file->equals(*File::fromString("c:\\A\\B.C")), Equal);
    EXPECT_EQ(file->equals(*File::fromString("c:\\A\\b")), Different);
    EXPECT_EQ(file->equals(*File::fromString("c:\\x\\b.c")), Different);
    EXPECT_EQ(file->equals(*folder("C:\\a\\b.c")), Undetermined);
    EXPECT_EQ(folder("C:\\a\\b.c")->equals(*file), Undetermined);
    EXPECT_EQ(file->replaceExtension(String())->equals(*file->replaceExtension("")), Different);
}

TEST(PathAlgebra, ChangesNames)
{
    auto path = folder("C:\\a\\b");
    path->setName("x.y");
    EXPECT_EQ(path->getFullName(), "C:\\a\\x.y\\");
    for (const char* const bad : {"", "a*", "x\\y", "z."}) path->setName(bad);
    EXPECT_EQ(path->getFullName(), "C:\\a\\x.y\\");
    auto root = folder("C:\\");
    root->setName("x");
    EXPECT_EQ(root->getFullName(), "C:\\");

    auto file = File::fromString("C:\\a\\b.c");
    EXPECT_EQ(nameOf(file->replaceExtension("d")), "C:\\a\\b.d");
    EXPECT_EQ(nameOf(file->replaceExtension("")), "C:\\a\\b");
    EXPECT_TRUE(file->replaceExtension(String())->getExtension().isNil());
    file->setName("any*thing.");
    EXPECT_EQ(file->getFullName(), "C:\\a\\any*thing");
    EXPECT_EQ(nameOf(file->getDirectory()), "C:\\a\\");
    EXPECT_EQ(nameOf(file->getParent()), "C:\\a\\");
    EXPECT_EQ(nameOf(folder("C:\\a\\b")->getParent()), "C:\\a\\");
    EXPECT_EQ(folder("C:\\")->getParent(), nullptr);
    EXPECT_EQ(folder("")->getParent(), nullptr);

    // The first path of an item goes before it.
    *file = *File::fromString("D:\\x.y");
    *root = *folder("D:\\");
    EXPECT_EQ(file->getFullName(), "D:\\x.y");
    EXPECT_EQ(root->getFullName(), "D:\\");
}

TEST(PathAlgebra, ContainsWhatItsNameBegins)
{
    const auto path = folder("C:\\a");
    EXPECT_TRUE(path->contains(*folder("C:\\a")));
    EXPECT_TRUE(path->contains(*File::fromString("C:\\a\\b\\c.d")));
    EXPECT_FALSE(path->contains(*folder("C:\\ab")));
    EXPECT_FALSE(path->contains(*folder("C:\\A\\b")));
    EXPECT_FALSE(path->contains(*File::fromString("C:\\a")));
}

/// The same algebra on plain lists of names.
class Model
{
   public:
    explicit Model(std::mt19937& random)
    {
        const auto count = random() % 9;
        for (unsigned i = 0; i < count; ++i) m_parts.push_back(PARTS[random() % std::size(PARTS)]);
    }

    String text(bool absolute) const
    {
        String text = absolute ? "C:\\" : "";
        for (const String& part : m_parts) text += part + "\\";
        return text;
    }

    /// False when it leads beyond the root.
    bool normalize()
    {
        std::vector<String> kept;
        for (const String& part : m_parts)
        {
            if (part == ".") continue;
            if (part != "..")
            {
                kept.push_back(part);
                continue;
            }
            if (kept.empty()) return false;
            kept.pop_back();
        }
        m_parts = kept;
        return true;
    }

    void append(const Model& other) { m_parts.insert(m_parts.end(), other.m_parts.begin(), other.m_parts.end()); }

   private:
    static constexpr const char* PARTS[] = {"a", "b", "A", "longer name", ".", "..", "x.y"};
    std::vector<String> m_parts;
};

TEST(PathAlgebra, AgreesWithListsOfNames)
{
    std::mt19937 random(7);
    for (int i = 0; i < 3000; ++i)
    {
        Model from(random);
        Model to(random);
        SCOPED_TRACE(testing::PrintToString(from.text(true)) + " " + testing::PrintToString(to.text(true)));
        const auto parsed = folder(from.text(true));
        ASSERT_EQ(parsed != nullptr, from.normalize());
        const auto relative = folder(to.text(false));
        if (parsed == nullptr) continue;
        EXPECT_EQ(parsed->getFullName(), from.text(true));

        Model both = from;
        both.append(to);
        const bool isPath = both.normalize();
        EXPECT_EQ(nameOf(parsed->appendPath(*relative)), isPath ? both.text(true) : "none");

        const auto reference = folder(to.text(true));
        if (reference == nullptr) continue;
        const auto difference = parsed->makeRelative(*reference);
        ASSERT_NE(difference, nullptr);
        EXPECT_EQ(reference->appendPath(*difference)->equals(*parsed), FileSystemItem::Equal);
        EXPECT_EQ(nameOf(folder(difference->getFullName())), difference->getFullName());
    }
}

/// A path and what it must say.
struct Derived
{
    std::shared_ptr<const Directory> path;
    std::vector<String> levels;

    bool isRight() const
    {
        String text("C:\\");
        for (const String& level : levels) text += level + "\\";
        return path->getFullName() == text && windowsPath().getLevels() == levels &&
               &windowsPath().getLevels() == &windowsPath().getLevels();
    }

    const OxaWindowsFileSystemDirectory& windowsPath() const
    {
        return dynamic_cast<const OxaWindowsFileSystemDirectory&>(*path->getImpl());
    }
};

Derived derive(const Derived& from, unsigned kind, const String& name)
{
    Derived to = from;
    if (kind < 2)
    {
        to.path = to.path->appendLevel(name);
        to.levels.push_back(name);
    }
    else if (to.levels.empty())
    {
        return to;
    }
    else if (kind == 2)
    {
        to.path = to.path->getParent();
        to.levels.pop_back();
    }
    else
    {
        const auto renamed = std::make_shared<Directory>(*to.path);
        renamed->setName(name);
        to.path = renamed;
        to.levels.back() = name;
    }
    return to;
}

// However they share what they begin with, and whichever of them goes first.
TEST(PathAlgebra, KeepsDerivedPathsApart)
{
    std::vector<Derived> shared{{folder("C:\\"), {}}};
    for (int depth = 0; depth < 40; ++depth) shared.push_back(derive(shared.back(), 0, "a long name of a level"));
    const auto work = [&shared](unsigned seed)
    {
        std::mt19937 random(seed);
        std::vector<Derived> own = shared;
        for (int i = 0; i < 2000; ++i)
        {
            Derived& place = own[random() % own.size()];
            place = derive(own[random() % own.size()], random() % 4, String("from thread ") << seed << '.' << i);
            ASSERT_TRUE(place.isRight()) << *place.path;
        }
        for (const Derived& each : own) ASSERT_TRUE(each.isRight()) << *each.path;
    };
    std::vector<std::jthread> threads;
    for (unsigned seed = 0; seed < 4; ++seed) threads.emplace_back(work, seed);
    threads.clear();
    for (const Derived& each : shared) EXPECT_TRUE(each.isRight()) << *each.path;
}

}  // namespace

}  // namespace Oxa_1_1::test
