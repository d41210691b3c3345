// The question of a failed assertion on a terminal, asked by a program of its own.

#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace Oxa_1_1
{

namespace
{

constexpr std::string_view QUESTION = "(a)bort, (r)etry, (i)gnore? ";

/// The program that asks, with a terminal of its own. What goes in `typedAhead` is there before it runs.
class TerminalProgram
{
   public:
    explicit TerminalProgram(const std::string& typedAhead, bool isErrorElsewhere = false)
    {
        const std::string program = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "diagnostics_ask";
        m_process = ::forkpty(&m_terminal, nullptr, nullptr, nullptr);
        if (m_process == 0)
        {
            ::usleep(50'000);
            if (isErrorElsewhere) ::close(STDERR_FILENO);
            // Sanitizers leave no core files unless they are told to.
            for (const char* const options : {"ASAN_OPTIONS", "TSAN_OPTIONS"})
                ::setenv(options, "disable_coredump=0", 1);
            ::execl(program.c_str(), program.c_str(), nullptr);
            ::_exit(127);
        }
        type(typedAhead);
    }
    ~TerminalProgram() { ::close(m_terminal); }
    TerminalProgram(const TerminalProgram&) = delete;
    TerminalProgram& operator=(const TerminalProgram&) = delete;

    void type(const std::string& text) const
    {
        EXPECT_EQ(::write(m_terminal, text.data(), text.size()), ssize_t(text.size()));
    }

    /// Reads until the next question, or to the end of the program.
    bool awaitQuestion()
    {
        const std::size_t begin = output.size();
        pollfd ready{m_terminal, POLLIN, 0};
        while (::poll(&ready, 1, 60'000) > 0)
        {
            char text[256];
            const ssize_t count = ::read(m_terminal, text, sizeof text);
            if (count <= 0) return false;
            output.append(text, static_cast<std::size_t>(count));
            if (output.size() - begin >= QUESTION.size() && output.ends_with(QUESTION)) return true;
        }
        return false;
    }

    int exitCode() const
    {
        int status = -1;
        ::waitpid(m_process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::size_t count(std::string_view text) const
    {
        std::size_t found = 0;
        for (std::size_t at = 0; (at = output.find(text, at)) != std::string::npos; ++at) ++found;
        return found;
    }

    std::string output;

   private:
    int m_terminal = -1;
    pid_t m_process = -1;
};

TEST(AssertionPrompt, TakesOnlyAnswersThatAreGivenToIt)
{
    const struct
    {
        const char* typedAhead;
        std::vector<const char*> answers;
        int code;
    } cases[] = {
        {"", {"i"}, 0},
        {"", {"r", " Retry "}, 0},
        {"", {"what", "", "analyze all", "ar", "IGNORE"}, 0},
        {"", {"a"}, 3},
        {"", {"r", "Abort"}, 3},
        // Meant for the program, not for a question that was still to come.
        {"analyze all\n", {"i"}, 0},
        {"a\na\n", {"i"}, 0},
    };
    for (const auto& c : cases)
    {
        TerminalProgram program(c.typedAhead);
        std::size_t questions = 0;
        while (program.awaitQuestion() && questions < c.answers.size())
            program.type(std::string(c.answers[questions++]) + "\n");
        EXPECT_EQ(program.exitCode(), c.code) << program.output;
        EXPECT_EQ(program.count(QUESTION), c.answers.size()) << program.output;
    }
}

TEST(AssertionPrompt, ShowsTheReportOnceAndAsItIs)
{
    for (const bool isErrorElsewhere : {false, true})
    {
        TerminalProgram program("", isErrorElsewhere);
        ASSERT_TRUE(program.awaitQuestion());
        program.type("i\n");
        program.awaitQuestion();
        EXPECT_EQ(program.exitCode(), 0);
        EXPECT_EQ(program.count("Assertion round < 0 failed.\r\nIn file "), 1U) << program.output;
        EXPECT_EQ(program.count("\"größer als 0 ✓\"\r\n"), 1U) << program.output;
    }
}

TEST(AssertionPrompt, AbortLeavesACoreFileWhereTheSystemIsSetToDoSo)
{
    std::string pattern;
    std::ifstream("/proc/sys/kernel/core_pattern") >> pattern;
    if (pattern.find_first_of("|/") != std::string::npos) GTEST_SKIP() << "cores go elsewhere: " << pattern;
    const auto here = std::filesystem::current_path();
    const auto folder = std::filesystem::path(testing::TempDir()) / ("core" + std::to_string(::getpid()));
    rlimit former{};
    ::getrlimit(RLIMIT_CORE, &former);
    for (const rlim_t limit : {rlim_t{0}, former.rlim_max})
    {
        const rlimit own{limit, former.rlim_max};
        std::filesystem::create_directory(folder);
        std::filesystem::current_path(folder);
        ::setrlimit(RLIMIT_CORE, &own);
        TerminalProgram program("");
        program.awaitQuestion();
        program.type("a\n");
        program.awaitQuestion();
        EXPECT_EQ(program.exitCode(), 3);
        EXPECT_EQ(std::filesystem::is_empty(folder), limit == 0);
        ::setrlimit(RLIMIT_CORE, &former);
        std::filesystem::current_path(here);
        std::filesystem::remove_all(folder);
    }
}

TEST(AssertionPrompt, WithoutATerminalTheProgramEnds)
{
    int status = -1;
    const std::string program = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "diagnostics_ask";
    const pid_t process = ::fork();
    if (process == 0)
    {
        ::setsid();
        ::execl(program.c_str(), program.c_str(), nullptr);
        ::_exit(127);
    }
    ::waitpid(process, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 3);
}

}  // namespace

}  // namespace Oxa_1_1
