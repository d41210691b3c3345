// What the system is asked for, in which spelling, and what its failures become.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

#include "base/diagnostics/windows_error.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/failure.h"
#include "base/filesystem/file.h"
#include "base/platform/files/file_observer.h"
#include "base/platform/system/last_error.h"
#include "base/platform/system/shell.h"
#include "tests/filesystem/foreigners.h"
#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

/// Counts operations, notes their paths, and lets some fail.
class Recorder final : public platform::FileObserver
{
   public:
    Recorder() : m_former(platform::setFileObserver(this)) {}
    ~Recorder() override { platform::setFileObserver(m_former); }

    std::optional<DWORD> called(std::string_view operation, TextView path, TextView target) override
    {
        paths[std::string(operation)] = path;
        if (!target.empty()) targets[std::string(operation)] = target;
        const int call = ++counts[std::string(operation)];
        if (operation != m_failing || call < m_failingCall) return std::nullopt;
        return m_code;
    }

    /// From its nth call on.
    void fail(const std::string& operation, DWORD code, int call = 1)
    {
        m_failing = operation;
        m_code = code;
        m_failingCall = call;
        counts.clear();
    }

    std::map<std::string, int> counts;
    std::map<std::string, String> paths;
    std::map<std::string, String> targets;

   private:
    platform::FileObserver* m_former;
    std::string m_failing;
    DWORD m_code = 0;
    int m_failingCall = 1;
};

TEST(Requests, AreSpelledForPathsOfAnyLengthOrNot)
{
    const auto file = File::fromString("C:\\no\\where\\f.x");
    const auto folder = Directory::fromString("C:\\no\\where");
    const String longFile = "\\\\?\\C:\\no\\where\\f.x";
    const String longFolder = "\\\\?\\C:\\no\\where\\";
    Messages messages;
    Recorder recorder;
    const auto pathOf = [&](const char* operation, auto act)
    {
        recorder.paths.clear();
        static_cast<void>(act());
        return recorder.paths[operation];
    };
    std::uint64_t time = 0;
    EXPECT_EQ(pathOf("readAttributes", [&] { return file->exists(); }), longFile);
    EXPECT_EQ(pathOf("readAttributes", [&] { return folder->exists(); }), longFolder);
    EXPECT_EQ(pathOf("readAttributes", [&] { return file->isReadOnly(); }), file->getFullName());
    EXPECT_EQ(pathOf("readAttributes", [&] { return file->setAsReadOnly(); }), file->getFullName());
    EXPECT_EQ(pathOf("readInformation", [&] { return file->getLastWriteTime(reinterpret_cast<FILETIME*>(&time)); }),
              longFile);
    EXPECT_EQ(pathOf("touchFile", [&] { return file->touch(); }), longFile);
    recorder.fail("createFolder", 5);
    EXPECT_TRUE(pathOf("createFolder", [&] { return folder->create(); }).startsWith("\\\\?\\C:\\"));
    EXPECT_EQ(pathOf("isEmptyFolder", [&] { return folder->isEmpty(); }), longFolder);
    EXPECT_EQ(pathOf("openFolder", [&] { return folder->findFiles("*"); }), longFolder);
    EXPECT_EQ(pathOf("openFolder", [&] { return folder->appendLevel("..")->findFiles("*"); }), "\\\\?\\C:\\no\\");
    const auto share = Directory::fromString("\\\\s\\t\\a\\..\\b");
    EXPECT_EQ(pathOf("openFolder", [&] { return share->findFiles("*"); }), "\\\\s\\t\\a\\..\\b\\");
    EXPECT_EQ(pathOf("copyFile", [&] { return file->copy(*file, true, nullptr); }), longFile);
    EXPECT_EQ(recorder.targets["copyFile"], longFile);
    EXPECT_EQ(pathOf("renameFile", [&] { return file->move(*file, true); }), longFile);
    EXPECT_EQ(recorder.targets["renameFile"], longFile);
}

/// Writes a file just before another one gets its name.
class Intruder final : public platform::FileObserver
{
   public:
    explicit Intruder(const TempFolder& temp) : m_temp(temp), m_former(platform::setFileObserver(this)) {}
    ~Intruder() override { platform::setFileObserver(m_former); }

    std::optional<DWORD> called(std::string_view operation, TextView /*path*/, TextView /*target*/) override
    {
        if (operation == "renameFile") m_temp.write("place", "theirs");
        return std::nullopt;
    }

   private:
    const TempFolder& m_temp;
    platform::FileObserver* m_former;
};

TEST(Requests, MoveNothingOverWhatCameMeanwhile)
{
    const TempFolder temp;
    temp.write("file", "mine");
    Messages messages;
    const Intruder intruder(temp);
    EXPECT_FALSE(temp.file("file")->move(*temp.file("place"), false));
    EXPECT_EQ(temp.read("file"), "mine");
    EXPECT_EQ(temp.read("place"), "theirs");
    EXPECT_EQ(messages.take(), Texts{});
}

TEST(Requests, ThatTellNothingAreNoSignOfRemovedFiles)
{
    const TempFolder temp;
    temp.write("file");
    Messages messages;
    Recorder recorder;
    for (const auto& [code, isMissing] : {std::pair<DWORD, bool>{5, false}, {1117, false}, {2, true}, {53, true}})
    {
        recorder.fail("readAttributes", code);
        EXPECT_EQ(temp.file("file")->remove(), isMissing) << code;
        EXPECT_EQ(messages.take().empty(), isMissing) << code;
    }
    EXPECT_TRUE(temp.has("file"));
}

TEST(Requests, FailWithTheCodesOfCopies)
{
    const TempFolder temp;
    temp.write("a");
    Recorder recorder;
    const std::pair<DWORD, int> codes[] = {{112, 221}, {1235, 24}, {5, 18}, {32, 18}, {80, 18}, {39, 18}};
    for (const auto& [error, code] : codes)
    {
        recorder.fail("copyFile", error);
        EXPECT_EQ(temp.file("a")->copy(*temp.file("b"), true, nullptr), code) << error;
        EXPECT_EQ(temp.file("b")->copyFrom(*temp.file("a"), true, nullptr), nullptr);
    }
}

TEST(Requests, LeaveNothingOfAFailedCopyOfAFolder)
{
    const TempFolder temp;
    temp.makeFolder("target");
    for (const char* const name : {"tree/a", "tree/b"})
    {
        temp.write(name);
        temp.setReadOnly(name, true);
    }
    Messages messages;
    Recorder recorder;
    recorder.fail("copyFile", 112, 2);
    EXPECT_EQ(temp.directory("tree")->copy(*temp.directory("target"), false, nullptr), nullptr);
    EXPECT_EQ(platform::lastError(), 112U);
    // Cleaning up has not taken its place.
    EXPECT_EQ(lastFailure()->operation, "copyFile");
    EXPECT_TRUE(lastFailure()->code == std::errc::no_space_on_device);
    EXPECT_EQ(recorder.counts["copyFile"], 2);
    EXPECT_EQ(temp.contents(), (Names{"target/", "tree/", "tree/a", "tree/b"}));
    EXPECT_TRUE(messages.take().empty());
}

TEST(Requests, ThatFailMakeNoOperationOnATreeTrue)
{
    for (const bool isGeneric : {false, true})
    {
        const TempFolder temp;
        Messages messages;
        for (const char* const name : {"tree/a", "tree/b/c", "tree/b/d"}) temp.write(name);
        temp.makeFolder("target");
        const Names before = temp.contents("tree");
        const auto foreigners = isGeneric ? std::make_unique<ForeignersFirst>() : nullptr;
        const auto tree = temp.directory("tree");
        Recorder recorder;
        for (const char* const operation : {"openFolder", "nextEntry"})
        {
            const auto failing = [&](const auto& act)
            {
                recorder.fail(operation, 5, 2);
                return act();
            };
            unsigned long long bytes = 0;
            EXPECT_FALSE(failing([&] { return tree->size(bytes); })) << operation << isGeneric;
            const auto target = temp.directory("target");
            EXPECT_FALSE(failing([&] { return tree->copyContents(*target, true, true, nullptr); })) << operation;
            EXPECT_EQ(failing([&] { return tree->copy(*target, true, nullptr); }), nullptr) << operation;
            EXPECT_FALSE(failing([&] { return tree->move(*temp.directory("moved"), true); })) << operation;
            EXPECT_LT(failing([&] { return tree->collectFiles("*", true).size(); }), 3U);
            EXPECT_FALSE(Directory::isLastListWhole());
            recorder.fail("none", 0);
            EXPECT_EQ(tree->collectFiles("*", true).size(), 3U);
            EXPECT_TRUE(Directory::isLastListWhole());
            EXPECT_EQ(temp.contents("tree"), before);
        }
        recorder.fail("readAttributes", 5);
        messages.take();
        EXPECT_FALSE(tree->remove(true));
        EXPECT_EQ(messages.take().size(), 1U);
        EXPECT_EQ(temp.contents("tree"), before);
    }
}

TEST(Requests, OfRemovalsEndAlikeByOpenFoldersAndByPaths)
{
    const TempFolder temp;
    Messages messages;
    std::map<std::string, Texts> reports;
    for (const std::string top : {"open", "generic"})
    {
        for (const char* const file : {"/a", "/b/c", "/b/d/kept", "/b/e/f/g"}) temp.write(top + file);
        temp.makeFolder(top + "/b/h");
        ASSERT_EQ(temp.file(top + "/b/d/kept")->setAsReadOnly(), 0);
        const auto foreigners = top == "generic" ? std::make_unique<ForeignersFirst>() : nullptr;
        const auto folder = temp.directory(top);
        EXPECT_TRUE(folder->removeContents(false));
        EXPECT_FALSE(temp.has(top + "/a"));
        EXPECT_FALSE(folder->remove(true));
        for (String& message : messages.take())
        {
            message.replace(folder->getFullName(), "");
            reports[top].push_back(message);
        }
        EXPECT_TRUE(temp.has(top + "/b/d/kept"));
        for (const char* const gone : {"/b/c", "/b/e", "/b/h"}) EXPECT_FALSE(temp.has(top + gone)) << top << gone;
        EXPECT_EQ(temp.file(top + "/b/d/kept")->unsetAsReadOnly(), 0);
        EXPECT_TRUE(folder->remove(true));
        EXPECT_FALSE(temp.has(top));
    }
    EXPECT_FALSE(reports["open"].empty());
    EXPECT_EQ(reports["open"], reports["generic"]);
}

TEST(Requests, FailWithMessages)
{
    const TempFolder temp;
    temp.write("a");
    temp.makeFolder("d");
    Messages messages;
    Recorder recorder;
    const auto file = temp.file("a");
    const auto message = [](const String& text, const String& path, DWORD code)
    { return Texts{text + path + "'.\r\nWindows error message: " + getWindowsError(code)}; };
    recorder.fail("deleteFile", 32);
    EXPECT_FALSE(file->remove());
    EXPECT_EQ(messages.take(), message("Failed to delete file '", file->getFullName(), 32));
    recorder.fail("removeFolder", 5);
    EXPECT_FALSE(temp.directory("d")->remove());
    EXPECT_EQ(messages.take(), message("Failed to remove directory '", temp.directory("d")->getFullName(), 5));
    recorder.fail("createFolder", 112);
    EXPECT_FALSE(temp.directory("e")->create());
    EXPECT_EQ(messages.take(), message("Failed to create the directory '", temp.directory("e")->getFullName(), 112));
    // Another process was faster.
    recorder.fail("createFolder", 183);
    EXPECT_TRUE(temp.directory("e")->create());
    recorder.fail("renameFile", 17);
    EXPECT_FALSE(file->move(*temp.file("b"), false));
    EXPECT_TRUE(messages.take().at(0).endsWith("because: " + getWindowsError(17)));
    recorder.fail("writeAttributes", 5);
    EXPECT_EQ(file->setAsReadOnly(), 0);
    EXPECT_FALSE(file->isReadOnly());
    recorder.fail("currentFolder", 21);
    EXPECT_EQ(Directory::fromString("x")->makeAbsolute(), nullptr);
    EXPECT_EQ(messages.take(), Texts{"Failed to get the current working directory."});
    EXPECT_EQ(Directory::fromString("x")->findFiles("*"), nullptr);
}

TEST(Requests, KeepWhatWasReadUntilAFailure)
{
    const TempFolder temp;
    for (const char* const name : {"a", "b", "c", "d"}) temp.write(name);
    Recorder recorder;
    recorder.fail("nextEntry", 5, 3);
    EXPECT_EQ(temp.directory()->collectFiles("*", false).size(), 2U);
    recorder.fail("openFolder", 5);
    EXPECT_TRUE(temp.directory()->collectFiles("*", true).empty());
}

TEST(Requests, AreAsManyAsTheOrderNeeds)
{
    const TempFolder temp;
    for (const char* const name : {"a/1", "a/2", "b/c/3", "4"}) temp.write(name);
    Recorder recorder;
    constexpr int FOLDERS = 4;
    EXPECT_EQ(temp.directory()->collectFiles("*", true).size(), 4U);
    // A folder is read once for the list and once to go on.
    EXPECT_EQ(recorder.counts["openFolder"], FOLDERS);
    EXPECT_EQ(recorder.counts["rewind"], FOLDERS);
    recorder.counts.clear();
    EXPECT_EQ(temp.directory()->collectContents("*", true).size(), 7U);
    EXPECT_EQ(recorder.counts["openFolder"], FOLDERS);
    EXPECT_EQ(recorder.counts["rewind"], 2 * FOLDERS);
    EXPECT_EQ(recorder.counts["readAttributes"] + recorder.counts["isLink"] + recorder.counts["readIdentity"], 0);
}

TEST(Requests, GoToTheDesktop)
{
    static std::vector<platform::ShellRequest> requests;
    static std::intptr_t answer = 33;
    const TempFolder temp;
    temp.write("a");
    platform::setShellHook(
        [](const platform::ShellRequest& request)
        {
            requests.push_back(request);
            return answer;
        });
    const auto file = temp.file("a");
    EXPECT_TRUE(file->openWithDefaultApp());
    EXPECT_TRUE(File::openWithDefaultApp("any"));
    EXPECT_TRUE(file->showInExplorer());
    EXPECT_TRUE(temp.directory()->openInExplorer());
    EXPECT_FALSE(temp.file("missing")->showInExplorer());
    answer = 32;
    EXPECT_TRUE(file->openWithDefaultApp());
    EXPECT_FALSE(temp.directory()->openInExplorer());
    platform::setShellHook(nullptr);
    ASSERT_EQ(requests.size(), 6U);
    EXPECT_EQ(String(requests[0].path), file->getFullName());
    EXPECT_EQ(String(requests[1].path), "any");
    EXPECT_EQ(String(requests[2].path), file->getFullNameUnicode());
    EXPECT_EQ(String(requests[3].path), temp.directory()->getFullNameUnicode());
}

}  // namespace

}  // namespace Oxa_1_1::test
