// Narrow standard streams.

#include <istream>
#include <ostream>

#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

namespace
{

using Traits = std::char_traits<char>;

bool isEnd(int c) { return Traits::eq_int_type(c, Traits::eof()); }

bool isBlank(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// Reads behind the opening quote up to the closing one; false at the end of input.
bool readQuoted(std::streambuf& buffer, std::string& token)
{
    for (int c = buffer.sbumpc(); !isEnd(c); c = buffer.sbumpc())
    {
        if (c == '"') return true;
        if (c == '\\') c = buffer.sbumpc();
        if (isEnd(c)) return false;
        token += Traits::to_char_type(c);
    }
    return false;
}

/// Reads up to white space, which stays in the stream; false at the end of input. The first character counts whatever
/// it is: what is blank before a token is the stream's locale's to say.
bool readWord(std::streambuf& buffer, std::string& token)
{
    int c = buffer.sgetc();
    for (; !isEnd(c) && (token.empty() || !isBlank(c)); c = buffer.snextc()) token += Traits::to_char_type(c);
    return !isEnd(c);
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const String& text)
{
    return text.isEmpty() ? stream : stream << text.stringAnsi();
}

std::istream& operator>>(std::istream& stream, String& text)
{
    text = String::NIL;
    std::string token;
    // White space is skipped here whatever the stream's flags say, so they need no change.
    std::ws(stream);
    if (const std::istream::sentry ready(stream, true); ready)
    {
        std::streambuf& buffer = *stream.rdbuf();
        const bool quoted = buffer.sgetc() == '"';
        if (quoted) buffer.sbumpc();
        const bool ended = quoted ? readQuoted(buffer, token) : readWord(buffer, token);
        if (!ended) stream.setstate(token.empty() && !quoted ? std::ios::eofbit | std::ios::failbit : std::ios::eofbit);
    }
    text = String(token);
    return stream;
}

}  // namespace Oxa_1_1
