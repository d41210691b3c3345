#include "base/platform/system/prompt.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>
#include <string_view>

#include "base/text/utf8.h"

namespace Oxa_1_1::platform
{

namespace
{

/// The controlling terminal of the process.
class Terminal
{
   public:
    Terminal() : m_file(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)) {}
    ~Terminal()
    {
        if (m_file >= 0) ::close(m_file);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    bool isOpen() const { return m_file >= 0; }

    bool write(const std::string& text) const
    {
        std::size_t done = 0;
        while (done < text.size())
        {
            const ssize_t written = ::write(m_file, text.data() + done, text.size() - done);
            if (written < 0 && errno == EINTR) continue;
            if (written <= 0) return false;
            done += static_cast<std::size_t>(written);
        }
        return true;
    }

    /// What was typed before the question was meant for the program.
    void dropInput() const { ::tcflush(m_file, TCIFLUSH); }

    /// The next line, in lower case and without blanks around it; false at the end of input.
    bool readAnswer(std::string& answer) const
    {
        answer.clear();
        for (char c = 0;;)
        {
            const ssize_t count = ::read(m_file, &c, 1);
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) return false;
            if (c == '\n') break;
            answer += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        }
        constexpr const char* BLANKS = " \t\r";
        answer.erase(answer.find_last_not_of(BLANKS) + 1);
        answer.erase(0, answer.find_first_not_of(BLANKS));
        return true;
    }

   private:
    int m_file;
};

struct Choice
{
    std::string_view word;
    Answer answer;
};

constexpr std::array CHOICES{Choice{"abort", Answer::Abort}, Choice{"retry", Answer::Retry},
                             Choice{"ignore", Answer::Ignore}};

/// Standard error, which is where debug output goes, is the terminal that the question stands on.
bool isOutputOnTerminal()
{
    const pid_t session = ::tcgetsid(STDERR_FILENO);
    return session > 0 && session == ::getsid(0);
}

}  // namespace

Answer askAbortRetryIgnore(const Char* text, const Char* caption, bool isWritten)
{
    // Before the terminal may take the number of a closed standard error.
    const bool isShown = isWritten && isOutputOnTerminal();
    const Terminal terminal;
    if (!terminal.isOpen()) return Answer::Abort;
    std::string question(1, '\n');
    question.append(text::encodeUtf8(caption)).append("\n");
    if (!isShown) question.append(text::encodeUtf8(text)).append("\n");
    if (!terminal.write(question)) return Answer::Abort;
    terminal.dropInput();
    std::string answer;
    while (terminal.write("(a)bort, (r)etry, (i)gnore? ") && terminal.readAnswer(answer))
        for (const Choice& choice : CHOICES)
            if (answer == choice.word || answer == choice.word.substr(0, 1)) return choice.answer;
    return Answer::Abort;
}

}  // namespace Oxa_1_1::platform
