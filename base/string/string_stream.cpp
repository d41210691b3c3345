// Narrow standard streams.

#include <istream>
#include <locale>
#include <ostream>

#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

namespace
{

using Traits = std::char_traits<char>;

bool isEnd(int c) { return Traits::eq_int_type(c, Traits::eof()); }

bool isEndOfToken(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

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
    for (; !isEnd(c) && (token.empty() || !isEndOfToken(c)); c = buffer.snextc()) token += Traits::to_char_type(c);
    return !isEnd(c);
}

/// Reads one token and tells how the stream is afterwards.
std::ios::iostate readToken(std::istream& stream, std::string& token)
{
    std::streambuf& buffer = *stream.rdbuf();
    const auto& types = std::use_facet<std::ctype<char>>(stream.getloc());
    int c = buffer.sgetc();
    while (!isEnd(c) && types.is(std::ctype_base::space, Traits::to_char_type(c))) c = buffer.snextc();
    if (isEnd(c)) return std::ios::eofbit | std::ios::failbit;

    const bool quoted = c == '"';
    if (quoted) buffer.sbumpc();
    const bool ended = quoted ? readQuoted(buffer, token) : readWord(buffer, token);
    return ended ? std::ios::goodbit : std::ios::eofbit;
}

/// In the handler of an exception that the stream's buffer threw: passes it on when the stream's user wants such.
void reportBad(std::istream& stream)
{
    try
    {
        stream.setstate(std::ios::badbit);
    }
    catch (...)  // NOLINT(bugprone-empty-catch): the state is set; the buffer's own exception is what counts
    {
    }
    if ((stream.exceptions() & std::ios::badbit) != 0) throw;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const String& text)
{
    return text.isEmpty() ? stream : stream << text.stringAnsi();
}

std::ostream& operator<<(std::ostream& stream, const Utf8Bytes& text)
{
    return text.bytes.empty() ? stream : stream << text.bytes;
}

void writeReadably(std::ostream& stream, const String& text)
{
    if (text.isNil())
    {
        stream << "NIL";
        return;
    }
    String escaped = text;
    escaped.controlsToEsc(true);
    stream << '"' << escaped.stringUTF8() << '"';
}

std::istream& operator>>(std::istream& stream, String& text)
{
    text = String::NIL;
    const std::istream::sentry ready(stream, true);
    std::string token;
    std::ios::iostate state = std::ios::goodbit;
    try
    {
        if (ready) state = readToken(stream, token);
    }
    catch (...)
    {
        text = String(token);
        reportBad(stream);
        return stream;
    }
    // Before the state is set, which may throw.
    text = String(token);
    stream.setstate(state);
    return stream;
}

}  // namespace Oxa_1_1
