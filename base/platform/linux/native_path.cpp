#include "base/platform/linux/native_path.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/platform/character.h"
#include "base/platform/linux/environment.h"
#include "base/platform/utf8.h"

namespace Oxa_1_1::platform
{

namespace
{

constexpr char16_t FORBIDDEN_BASE = 0xF000;
constexpr char16_t STRAY_BASE = 0xDC00;
constexpr TextView FORBIDDEN = OXA_TEXT("\\:*?\"<>|");

constexpr bool isForbidden(char32_t c)
{
    return c < 0x20 || (c < 0x80 && FORBIDDEN.find(static_cast<Char>(c)) != TextView::npos);
}

bool standsForForbidden(char32_t c) { return c > FORBIDDEN_BASE && c < FORBIDDEN_BASE + 0x80; }

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

/// One well-formed sequence of UTF-8, or a length of 0.
struct Sequence
{
    char32_t c = 0;
    std::size_t length = 0;
};

Sequence readSequence(std::string_view bytes)
{
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return {};
    char32_t c = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i)
    {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (!isContinuation(byte)) return {};
        c = c << 6 | (byte & 0x3FU);
    }
    const bool isOverlong = (length == 3 && c < 0x800) || (length == 4 && c < 0x10000);
    const bool isSurrogate = c >= 0xD800 && c < 0xE000;
    return isOverlong || isSurrogate || c > 0x10FFFF ? Sequence{} : Sequence{c, length};
}

void appendCharacter(Text& text, char32_t c)
{
    if (c < 0x10000)
    {
        text += static_cast<char16_t>(c);
        return;
    }
    text += static_cast<char16_t>(0xD7C0 + (c >> 10));
    text += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
}

void appendStray(Text& text, std::string_view bytes)
{
    for (const char byte : bytes) text += static_cast<char16_t>(STRAY_BASE + static_cast<unsigned char>(byte));
}

void appendName(Text& text, std::string_view name)
{
    const bool isDots = name == "." || name == "..";
    while (!name.empty())
    {
        const Sequence sequence = readSequence(name);
        const std::size_t length = sequence.length == 0 ? 1 : sequence.length;
        const bool isLast = length == name.size();
        const bool isLastBlank = isLast && !isDots && (sequence.c == ' ' || sequence.c == '.');
        if (sequence.length == 0 || standsForForbidden(sequence.c))
            appendStray(text, name.substr(0, length));
        else if (isForbidden(sequence.c) || isLastBlank)
            text += static_cast<char16_t>(FORBIDDEN_BASE + sequence.c);
        else
            appendCharacter(text, sequence.c);
        name.remove_prefix(length);
    }
}

/// Units that stand for single bytes between runs of ordinary text.
bool isStray(TextView text, std::size_t i)
{
    if (text[i] < STRAY_BASE + 0x80 || text[i] > STRAY_BASE + 0xFF) return false;
    const bool isPaired = i > 0 && text[i - 1] >= 0xD800 && text[i - 1] < 0xDC00;
    return !isPaired;
}

constexpr TextView SEPARATORS = OXA_TEXT("\\/");

bool isSeparator(Char c) { return c == u'\\' || c == u'/'; }

void appendNative(std::string& path, TextView text)
{
    std::size_t plain = 0;
    const auto flush = [&](std::size_t end)
    {
        path += encodeUtf8(text.substr(plain, end - plain));
        plain = end + 1;
    };
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (!isSeparator(text[i]) && !standsForForbidden(text[i]) && !isStray(text, i)) continue;
        flush(i);
        path += isSeparator(text[i]) ? '/' : static_cast<char>(text[i] & 0xFF);
    }
    flush(text.size());
}

bool startsWithDrive(TextView text) { return text.size() >= 2 && text[1] == u':' && detail::isAsciiLetter(text[0]); }

bool startsWithShare(TextView text) { return text.size() > 2 && isSeparator(text[0]) && isSeparator(text[1]); }

/// Drops the prefix of long paths: \\?\ and \\?\UNC\.
Text withoutLongPrefix(TextView text)
{
    if (text.size() < 4 || !startsWithShare(text) || text[2] != u'?' || !isSeparator(text[3])) return Text(text);
    const TextView rest = text.substr(4);
    const bool isShare = rest.size() >= 4 && (rest[0] | 0x20) == 'u' && (rest[1] | 0x20) == 'n' &&
                         (rest[2] | 0x20) == 'c' && isSeparator(rest[3]);
    return isShare ? Text(u"\\\\").append(rest.substr(4)) : Text(rest);
}

/// The folder of links that stand for drives and shares.
std::string drivesFolder()
{
    const std::string folder = environmentVariable("OXA_DRIVES");
    return folder.empty() ? configurationFolder() + "/OxaBase/drives" : folder;
}

/// Where the server and the share end in a path that begins with them.
std::size_t endOfShare(TextView text)
{
    const std::size_t server = std::min(text.find_first_of(SEPARATORS, 2), text.size());
    return std::min(text.find_first_of(SEPARATORS, std::min(server + 1, text.size())), text.size());
}

/// The folder that stands for the drive or share of a path without the prefix of long paths.
std::string rootOf(TextView text)
{
    if (startsWithDrive(text)) return drivesFolder() + '/' + static_cast<char>(text[0] | 0x20) + ':';
    if (!startsWithShare(text)) return {};
    std::string root = drivesFolder() + "/unc/";
    appendNative(root, text.substr(2, endOfShare(text) - 2));
    return root;
}

/// Bytes that a name does not spell as they are: what is forbidden, and what is not ASCII.
constexpr std::array<bool, 256> IS_SPECIAL = []
{
    std::array<bool, 256> special{};
    for (unsigned byte = 0; byte < 256; ++byte) special[byte] = byte >= 0x80 || isForbidden(byte);
    return special;
}();

}  // namespace

Text spellingOf(std::string_view nativePath)
{
    Text text;
    text.reserve(nativePath.size());
    for (;;)
    {
        const std::size_t end = nativePath.find('/');
        appendName(text, nativePath.substr(0, end));
        if (end == std::string_view::npos) return text;
        text += u'\\';
        nativePath.remove_prefix(end + 1);
    }
}

void spellName(std::string_view name, Text& spelling)
{
    // Nearly every name is plain, and its characters are widened without looking at them one by one.
    spelling.resize(name.size());
    bool isSpecial = name.empty();
    for (std::size_t i = 0; i < name.size(); ++i)
    {
        const auto byte = static_cast<unsigned char>(name[i]);
        isSpecial |= IS_SPECIAL[byte];
        spelling[i] = byte;
    }
    if (!isSpecial && name.back() != ' ' && name.back() != '.') return;
    spelling.clear();
    appendName(spelling, name);
}

std::string nativePathOf(TextView spelling)
{
    const Text text = withoutLongPrefix(spelling);
    std::string path = rootOf(text);
    const bool isDrive = startsWithDrive(text);
    const TextView rest = TextView(text).substr(path.empty() ? 0 : isDrive ? 2 : endOfShare(text));
    if (isDrive && !rest.empty() && !isSeparator(rest[0])) path += '/';
    appendNative(path, rest);
    return path;
}

std::string nativeRootOf(TextView spelling) { return rootOf(withoutLongPrefix(spelling)); }

bool isOnShare(TextView spelling) { return startsWithShare(withoutLongPrefix(spelling)); }

}  // namespace Oxa_1_1::platform
