#include "base/module/symbol_table.h"

#include <algorithm>
#include <istream>
#include <optional>
#include <string>

#include "base/text/character.h"
#include "base/text/scan.h"

namespace Oxa_1_1
{

namespace
{

constexpr TextView DEFINE = OXA_TEXT("#define");
/// Begins the names that the resource editor keeps for its own book-keeping.
constexpr TextView EDITOR_PREFIX = OXA_TEXT("_APS");

/// A multiplicative hash whose upper bits, too, reach the lower ones.
constexpr std::uint32_t mix(std::uint32_t value)
{
    value *= 0x9E3779B1;
    return value ^ (value >> 15);
}

std::uint32_t hashName(TextView name)
{
    std::uint32_t hash = 0;
    for (const Char c : name) hash = (hash ^ text::toLower(c)) * 0x01000193;
    return mix(hash);
}

bool isSameName(TextView a, TextView b)
{
    return a.size() == b.size() && text::compareUnitsIgnoreCase(a.data(), b.data(), a.size()) == 0;
}

std::size_t skipSpace(TextView text, std::size_t start)
{
    while (start < text.size() && text::isSpace(text[start])) ++start;
    return start;
}

std::size_t skipWord(TextView text, std::size_t start)
{
    while (start < text.size() && !text::isSpace(text[start])) ++start;
    return start;
}

/// The decimal number that begins at the first letter or digit: 0 when that is a letter with something before it. None
/// for what may be a name, which begins with a letter.
std::optional<unsigned int> readNumber(TextView text)
{
    constexpr std::uint64_t MAX = 0xFFFFFFFF;
    if (text.empty() || text::isAlpha(text.front())) return std::nullopt;
    std::size_t i = 0;
    while (i < text.size() && !text::isAlphaNumeric(text[i])) ++i;
    std::uint64_t value = 0;
    for (; i < text.size() && text::isDigit(text[i]); ++i)
        value = std::min(10 * value + static_cast<std::uint64_t>(text[i] - '0'), MAX);
    return static_cast<unsigned int>(value);
}

/// Keeps a stream from throwing within a scope; what it would have thrown for meanwhile shows in its state alone.
class ScopedQuiet
{
   public:
    explicit ScopedQuiet(std::istream& stream) : m_stream(stream), m_exceptions(stream.exceptions())
    {
        stream.exceptions(std::ios::goodbit);
    }
    ScopedQuiet(const ScopedQuiet&) = delete;
    ScopedQuiet& operator=(const ScopedQuiet&) = delete;
    ~ScopedQuiet()
    {
        // To give the flags back means to throw for what has happened.
        try
        {
            m_stream.exceptions(m_exceptions);
        }
        catch (const std::ios::failure&)
        {
        }
    }

   private:
    std::istream& m_stream;
    std::ios::iostate m_exceptions;
};

/// Names end at their first zero, as everywhere in comparisons.
TextView upToZero(TextView text) { return text.substr(0, text::findUnit(text.data(), text.size(), 0)); }

}  // namespace

OXA_CONSTINIT const SymbolTable SymbolTable::EMPTY;

bool SymbolTable::parseHeaderFile(std::istream& in)
{
    if (in.fail() && !in.eof()) return false;
    // A stream that throws at the end of the file would hide that all was well.
    const ScopedQuiet quiet(in);
    bool ok = true;
    Text text;
    for (std::string line; std::getline(in, line);)
    {
        // Mostly there is nothing to convert.
        const bool isAscii = std::none_of(line.begin(), line.end(), [](char c) { return c < 0; });
        if (isAscii) text.assign(line.begin(), line.end());
        ok = (isAscii ? parseLine(upToZero(text)) : parseLineHeaderFile(line)) && ok;
    }
    return ok && !in.bad();
}

bool SymbolTable::parseLineHeaderFile(const String& line) { return parseLine(upToZero(line.view())); }

bool SymbolTable::parseLine(TextView line)
{
    const std::size_t marker = text::findText(line.data(), line.size(), DEFINE.data(), DEFINE.size());
    if (marker == text::NOT_FOUND) return true;

    const std::size_t behind = marker + DEFINE.size();
    const std::size_t nameStart = skipSpace(line, behind);
    if (nameStart == behind || nameStart == line.size()) return false;
    const std::size_t nameEnd = skipWord(line, nameStart);
    const TextView name = line.substr(nameStart, nameEnd - nameStart);
    if (name.starts_with(EDITOR_PREFIX)) return true;

    const std::size_t valueStart = skipSpace(line, nameEnd);
    const TextView valueText = line.substr(valueStart, skipWord(line, valueStart) - valueStart);
    if (const auto number = readNumber(valueText)) return define(name, *number);
    const unsigned int value = valueOf(valueText);
    return value != UNKNOWN && define(name, value);
}

bool SymbolTable::define(TextView name, unsigned int value)
{
    if (2 * (m_symbols.size() + 1) > m_byName.size()) grow();
    const std::uint32_t hash = hashName(name);
    std::uint32_t& slot = m_byName[findSlot(name, hash)];
    if (slot != NONE) return false;
    const auto index = static_cast<std::uint32_t>(m_symbols.size());
    m_symbols.push_back({name, value, hash, NONE});
    slot = index;
    link(index);
    return true;
}

/// Where the name is, or where it belongs.
std::size_t SymbolTable::findSlot(TextView name, std::uint32_t hash) const noexcept
{
    const std::size_t mask = m_byName.size() - 1;
    for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask)
    {
        if (m_byName[slot] == NONE) return slot;
        const Symbol& symbol = m_symbols[m_byName[slot]];
        if (symbol.nameHash == hash && isSameName(symbol.name.view(), name)) return slot;
    }
}

void SymbolTable::grow()
{
    const std::size_t size = m_byName.empty() ? 16 : 2 * m_byName.size();
    m_byName.assign(size, NONE);
    m_byValue.assign(size, NONE);
    for (std::uint32_t i = 0; i < m_symbols.size(); ++i)
    {
        std::size_t slot = m_symbols[i].nameHash & (size - 1);
        while (m_byName[slot] != NONE) slot = (slot + 1) & (size - 1);
        m_byName[slot] = i;
        link(i);
    }
}

/// Puts a symbol in front of its chain of values.
void SymbolTable::link(std::uint32_t index)
{
    std::uint32_t& head = m_byValue[mix(m_symbols[index].value) & (m_byValue.size() - 1)];
    m_symbols[index].next = head;
    head = index;
}

unsigned int SymbolTable::valueOf(TextView name) const noexcept
{
    if (m_symbols.empty()) return UNKNOWN;
    const std::uint32_t index = m_byName[findSlot(name, hashName(name))];
    return index == NONE ? UNKNOWN : m_symbols[index].value;
}

unsigned int SymbolTable::lookupSymbol(const String& name) const noexcept { return valueOf(upToZero(name.view())); }

std::set<String, StringLess2> SymbolTable::lookupValue(unsigned int value) const
{
    std::set<String, StringLess2> names;
    if (m_symbols.empty()) return names;
    for (std::uint32_t i = m_byValue[mix(value) & (m_byValue.size() - 1)]; i != NONE; i = m_symbols[i].next)
        if (m_symbols[i].value == value) names.insert(m_symbols[i].name);
    return names;
}

std::vector<String> SymbolTable::names() const
{
    std::vector<String> names;
    names.reserve(m_symbols.size());
    for (const Symbol& symbol : m_symbols) names.push_back(symbol.name);
    return names;
}

}  // namespace Oxa_1_1
