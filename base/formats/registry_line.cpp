#include "base/formats/registry_line.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "base/text/character.h"
#include "base/text/scan.h"
#include "base/text/windows_1252.h"

namespace Oxa_1_1::formats
{

namespace
{

bool isBlank(Char c) { return c == ' ' || c == '\t'; }
bool isLineBreak(Char c) { return c == '\r' || c == '\n'; }

/// The value of a hexadecimal digit, 16 for anything else.
unsigned digitValue(Char c)
{
    if (text::isDigit(c)) return static_cast<unsigned>(c - '0');
    const Char lower = text::toLower(c);
    return lower >= 'a' && lower <= 'f' ? static_cast<unsigned>(lower - 'a' + 10) : 16;
}

std::vector<std::byte> bytesOf(TextView text)
{
    std::vector<std::byte> bytes(text.size() * sizeof(Char));
    if (!bytes.empty()) std::memcpy(bytes.data(), text.data(), bytes.size());
    return bytes;
}

bool isText(std::uint32_t type)
{
    return type == REGISTRY_TEXT || type == REGISTRY_EXPANDABLE_TEXT || type == REGISTRY_TEXTS;
}

std::vector<std::byte> widen(const std::vector<std::byte>& ansi)
{
    return bytesOf(text::decodeWindows1252({reinterpret_cast<const char*>(ansi.data()), ansi.size()}));
}

}  // namespace

TextView RegistryScanner::takeLine()
{
    const std::size_t end = std::min(text::findUnit(m_rest.data(), m_rest.size(), '\n'), m_rest.size());
    TextView line = m_rest.substr(0, end);
    m_rest.remove_prefix(std::min(end + 1, m_rest.size()));
    while (!line.empty() && (isBlank(line.back()) || isLineBreak(line.back()))) line.remove_suffix(1);
    while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
    return line;
}

Char RegistryScanner::skipToLine()
{
    while (isBlank(peek()) || isLineBreak(peek())) m_rest.remove_prefix(1);
    return peek();
}

std::optional<RegistryAssignment> RegistryScanner::takeAssignment()
{
    RegistryScanner line = *this;
    RegistryAssignment assignment;
    if (line.readAssignment(assignment) && line.readEndOfLine())
    {
        *this = line;
        return assignment;
    }
    takeLine();
    return std::nullopt;
}

bool RegistryScanner::readAssignment(RegistryAssignment& assignment)
{
    if (!take(OXA_TEXT("@")) && !readQuoted(assignment.name)) return false;
    skipBlanks();
    if (!take(OXA_TEXT("="))) return false;
    skipBlanks();
    return take(OXA_TEXT("-")) || readValue(assignment.value);
}

bool RegistryScanner::readValue(std::optional<RegistryValue>& value)
{
    value.emplace();
    if (peek() == '"')
    {
        Text text;
        if (!readQuoted(text)) return false;
        text += Char(0);
        *value = {REGISTRY_TEXT, bytesOf(text)};
        return true;
    }
    return take(OXA_TEXT("dword:")) ? readNumber(*value) : take(OXA_TEXT("hex")) && readHexadecimal(*value);
}

/// A text may hold line breaks as they are.
bool RegistryScanner::readQuoted(Text& text)
{
    if (!take(OXA_TEXT("\""))) return false;
    while (!m_rest.empty() && peek() != '"')
    {
        if (peek() == '\\' && m_rest.size() > 1) m_rest.remove_prefix(1);
        text += peek();
        m_rest.remove_prefix(1);
    }
    return take(OXA_TEXT("\""));
}

bool RegistryScanner::readNumber(RegistryValue& value)
{
    skipBlanks();
    std::uint32_t number = 0;
    if (!readDigits(8, number)) return false;
    value.type = REGISTRY_NUMBER;
    value.data.resize(sizeof number);
    std::memcpy(value.data.data(), &number, sizeof number);
    return true;
}

bool RegistryScanner::readHexadecimal(RegistryValue& value)
{
    value.type = REGISTRY_BINARY;
    if (take(OXA_TEXT("(")) && !(readDigits(8, value.type) && take(OXA_TEXT(")")))) return false;
    if (!take(OXA_TEXT(":")) || !readBytes(value.data)) return false;
    if (m_bytes == RegistryBytes::ANSI && isText(value.type)) value.data = widen(value.data);
    return true;
}

/// The comma behind the last byte is optional, as there is one before a continuation.
bool RegistryScanner::readBytes(std::vector<std::byte>& bytes)
{
    for (;;)
    {
        if (!skipContinuation()) return false;
        std::uint32_t byte = 0;
        if (digitValue(peek()) > 15) return true;
        if (!readDigits(2, byte)) return false;
        bytes.push_back(static_cast<std::byte>(byte));
        if (!skipContinuation()) return false;
        if (!take(OXA_TEXT(","))) return true;
    }
}

bool RegistryScanner::readDigits(unsigned most, std::uint32_t& number)
{
    number = 0;
    unsigned count = 0;
    for (; count <= most && digitValue(peek()) < 16; ++count)
    {
        number = number << 4 | digitValue(peek());
        m_rest.remove_prefix(1);
    }
    return count > 0 && count <= most;
}

/// The end of the line, be it behind a comment.
bool RegistryScanner::readEndOfLine()
{
    skipBlanks();
    if (!m_rest.empty() && peek() != ';' && !isLineBreak(peek())) return false;
    takeLine();
    return true;
}

/// Passes blanks, and backslashes with the line breaks behind them. False for a backslash before anything else.
bool RegistryScanner::skipContinuation()
{
    skipBlanks();
    while (take(OXA_TEXT("\\")))
    {
        skipBlanks();
        if (!m_rest.empty() && !isLineBreak(peek())) return false;
        skipToLine();
    }
    return true;
}

bool RegistryScanner::take(TextView word)
{
    if (m_rest.size() < word.size() || text::compareUnitsIgnoreCase(m_rest.data(), word.data(), word.size()) != 0)
        return false;
    m_rest.remove_prefix(word.size());
    return true;
}

void RegistryScanner::skipBlanks()
{
    while (isBlank(peek())) m_rest.remove_prefix(1);
}

}  // namespace Oxa_1_1::formats
