// The programs that stand for the desktop, replaced by scripts that write down how they are called.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/system/program.h"
#include "base/platform/system/shell.h"
#include "tests/platform/temporary_folder.h"

namespace Oxa_1_1::platform
{

namespace
{

class Desktop : public testing::Test
{
   protected:
    Desktop() : m_path(std::getenv("PATH"))
    {
        std::filesystem::create_directory(folder.path() / "bin");
        setenv("PATH", (folder.path() / "bin").c_str(), 1);
    }
    ~Desktop() override
    {
        setenv("PATH", m_path.c_str(), 1);
        // No child is left to wait for.
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
    }

    void install(const std::string& program, const std::string& ending = "exit 0") const
    {
        const std::string name = "bin/" + program;
        folder.write(name.c_str(), "#!/bin/sh\nfor word in " + program + " \"$@\"; do echo \"[$word]\"; done >>'" +
                                       (folder.path() / "log").string() + "'\n" + ending + "\n");
        std::filesystem::permissions(folder.path() / name, std::filesystem::perms::owner_all);
    }

    std::string takeLog() const
    {
        const std::string log = folder.read("log");
        std::filesystem::remove(folder.path() / "log");
        return log;
    }

    test::TemporaryFolder folder;

   private:
    std::string m_path;
};

TEST_F(Desktop, Opening)
{
    EXPECT_FALSE(openWithDefaultApp(folder / "file"));
    install("xdg-open");
    EXPECT_TRUE(openWithDefaultApp(folder / "a b'$(c)"));
    EXPECT_EQ(takeLog(), "[xdg-open]\n[" + (folder.path() / "a b'$(c)").string() + "]\n");
    EXPECT_TRUE(openFolderWindow(u"\\\\?\\\\d\\e\\"));
    EXPECT_EQ(takeLog(), "[xdg-open]\n[/d/e/]\n");
    EXPECT_TRUE(openWithDefaultApp(u"--help"));
    EXPECT_EQ(takeLog(), "[xdg-open]\n[./--help]\n");
    install("xdg-open", "exit 3");
    EXPECT_FALSE(openWithDefaultApp(folder / "file"));
    EXPECT_FALSE(openFolderWindow(folder / ""));
}

TEST_F(Desktop, Showing)
{
    const std::string name = "f,'%\xC3\xA4\xFF";
    folder.write(name.c_str(), "");
    const Text path = (folder / "") + spellingOf(name);
    const std::string uri = "file://" + folder.path().string() + "/f%2C%27%25%C3%A4%FF";
    EXPECT_FALSE(showInFolder(path));
    install("xdg-open");
    EXPECT_TRUE(showInFolder(path));
    EXPECT_EQ(takeLog(), "[xdg-open]\n[" + folder.path().string() + "]\n");
    install("gdbus");
    EXPECT_TRUE(showInFolder(path));
    EXPECT_EQ(takeLog(),
              "[gdbus]\n[call]\n[--session]\n[--timeout]\n[2]\n[--dest]\n[org.freedesktop.FileManager1]\n"
              "[--object-path]\n[/org/freedesktop/FileManager1]\n[--method]\n"
              "[org.freedesktop.FileManager1.ShowItems]\n[['" +
                  uri + "']]\n[]\n");
    install("dbus-send");
    EXPECT_TRUE(showInFolder(path));
    EXPECT_EQ(takeLog(),
              "[dbus-send]\n[--session]\n[--print-reply]\n[--reply-timeout=2000]\n"
              "[--dest=org.freedesktop.FileManager1]\n[--type=method_call]\n[/org/freedesktop/FileManager1]\n"
              "[org.freedesktop.FileManager1.ShowItems]\n[array:string:" +
                  uri + "]\n[string:]\n");
    install("gdbus", "exit 1");
    install("dbus-send", "exit 1");
    EXPECT_TRUE(showInFolder(path));
    EXPECT_TRUE(takeLog().ends_with("[xdg-open]\n[" + folder.path().string() + "]\n"));
    EXPECT_FALSE(showInFolder(folder / "missing"));
    EXPECT_EQ(takeLog(), "(none)");
}

/// The script of an application that stays open, whose end is seen at once when it is killed.
TEST_F(Desktop, DoesNotWaitForApplications)
{
    using namespace std::chrono_literals;
    const auto begin = std::chrono::steady_clock::now();
    install("app", "exec /bin/sleep 4");
    EXPECT_TRUE(runProgram({"app", "x"}, 50ms));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 3s);
    EXPECT_EQ(takeLog(), "[app]\n[x]\n");
    EXPECT_FALSE(runProgram({"no-such-program"}, 50ms));

    // Whoever has the system collect all children knows less, but is not kept waiting.
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_TRUE(runProgram({"app"}, 50ms));
    std::signal(SIGCHLD, before);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 3s);
}

}  // namespace

}  // namespace Oxa_1_1::platform
