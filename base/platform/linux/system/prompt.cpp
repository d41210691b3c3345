#include "base/platform/system/prompt.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>

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

    /// The first character of the next line, 0 for an empty one; false at the end of input.
    bool readChoice(char& choice) const
    {
        choice = 0;
        char c = 0;
        for (bool first = true;; first = false)
        {
            const ssize_t count = ::read(m_file, &c, 1);
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) return false;
            if (c == '\n') return true;
            if (first) choice = c;
        }
    }

   private:
    int m_file;
};

}  // namespace

Answer askAbortRetryIgnore(const Char* text, const Char* caption)
{
    const Terminal terminal;
    if (!terminal.isOpen()) return Answer::Abort;
    std::string question = "\n";
    question.append(text::encodeUtf8(caption)).append("\n").append(text::encodeUtf8(text)).append("\n");
    if (!terminal.write(question)) return Answer::Abort;
    char choice = 0;
    while (terminal.write("(a)bort, (r)etry, (i)gnore? ") && terminal.readChoice(choice))
    {
        switch (choice)
        {
            case 'a':
            case 'A':
                return Answer::Abort;
            case 'r':
            case 'R':
                return Answer::Retry;
            case 'i':
            case 'I':
                return Answer::Ignore;
            default:
                break;
        }
    }
    return Answer::Abort;
}

}  // namespace Oxa_1_1::platform
