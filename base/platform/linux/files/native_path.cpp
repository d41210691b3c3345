#include "base/platform/linux/files/native_path.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "base/platform/linux/files/current_folder.h"
#include "base/platform/linux/system/environment.h"
#include "base/text/character.h"
#include "base/text/utf8.h"

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

/// Whether the name around this place reads "." or ".." when U+F02E is taken for the period.
bool isInDots(TextView text, std::size_t i)
{
    const std::size_t before = text.find_last_of(SEPARATORS, i);
    const std::size_t begin = before == TextView::npos ? 0 : before + 1;
    const TextView name = text.substr(begin, text.find_first_of(SEPARATORS, i) - begin);
    return name.size() <= 2 && name.find_first_not_of(u".\uF02E") == TextView::npos;
}

/// Whether a unit stands for a character that is forbidden in names. One that would lead up or down the tree does not:
/// no name is spelled so, and what is one name for its reader stays one on disk.
bool isStandIn(TextView text, std::size_t i)
{
    if (!standsForForbidden(text[i])) return false;
    const int c = text[i] - FORBIDDEN_BASE;
    return c != '/' && (c != '.' || !isInDots(text, i));
}

/// Where a run of characters that are none of ASCII, and stand for nothing else, ends.
std::size_t endOfForeign(TextView text, std::size_t begin)
{
    std::size_t end = begin;
    while (end < text.size() && text[end] >= 0x80 && !isStandIn(text, end) && !isStray(text, end)) ++end;
    return end;
}

void appendNative(std::string& path, TextView text)
{
    path.reserve(path.size() + text.size());
    // Most paths are ASCII all along, or nearly.
    const auto* const foreign = std::ranges::find_if_not(text, text::detail::isAscii);
    const auto plain = static_cast<std::size_t>(foreign - text.begin());
    std::ranges::transform(text.substr(0, plain), std::back_inserter(path),
                           [](Char c) { return isSeparator(c) ? '/' : static_cast<char>(c); });
    for (std::size_t i = plain; i < text.size();)
    {
        const std::size_t end = endOfForeign(text, i);
        if (end > i)
            path += text::encodeUtf8(text.substr(i, end - i));
        else
            path += isSeparator(text[i]) ? '/' : static_cast<char>(text[i] & 0xFF);
        i = std::max(end, i + 1);
    }
}

bool startsWithDrive(TextView text)
{
    return text.size() >= 2 && text[1] == u':' && text::detail::isAsciiLetter(text[0]);
}

bool startsWithShare(TextView text) { return text.size() > 2 && isSeparator(text[0]) && isSeparator(text[1]); }

/// A path without what marks it as a long one or as one on a share.
struct Parsed
{
    TextView text;
    bool isShare = false;
    /// Behind the mark of long paths, where "Volume{...}" is a root and no name.
    bool isLong = false;

    bool isVolume() const { return isLong && !isShare && lengthOfVolume() != 0; }
    /// 0 when it is none.
    std::size_t lengthOfVolume() const
    {
        constexpr TextView BEGIN = u"volume{";
        const bool isNamed =
            text.size() > BEGIN.size() && std::ranges::equal(text.substr(0, BEGIN.size()), BEGIN, {}, &text::toLower);
        const std::size_t end = isNamed ? text.find(u'}') : TextView::npos;
        if (end == TextView::npos || (end + 1 < text.size() && !isSeparator(text[end + 1]))) return 0;
        return end + 1;
    }
    bool isDrive() const { return !isShare && startsWithDrive(text); }
    /// From the current folder of the drive on.
    bool isDriveRelative() const { return isDrive() && (text.size() == 2 || !isSeparator(text[2])); }
};

Parsed parse(TextView text)
{
    const bool isLong = startsWithShare(text) && text.size() >= 4 && text[2] == u'?' && isSeparator(text[3]);
    if (isLong) text.remove_prefix(4);
    const bool isLongShare = isLong && text.size() >= 4 && (text[0] | 0x20) == 'u' && (text[1] | 0x20) == 'n' &&
                             (text[2] | 0x20) == 'c' && isSeparator(text[3]);
    if (isLongShare) return {.text = text.substr(4), .isShare = true};
    if (startsWithShare(text)) return {.text = text.substr(2), .isShare = true};
    return {.text = text, .isLong = isLong};
}

/// The folder of links that stand for drives and shares.
std::string drivesFolder()
{
    if (std::string folder = environmentVariable("OXA_DRIVES"); !folder.empty()) return folder;
    const std::string settings = configurationFolder();
    // Without a home there are no drives: nobody can make this folder.
    return settings.empty() ? "/proc/none" : settings + "/OxaBase/drives";
}

/// Where the drive, or the server and the share, end.
std::size_t endOfRoot(const Parsed& path)
{
    if (path.isVolume()) return path.lengthOfVolume();
    if (!path.isShare) return path.isDrive() ? 2 : 0;
    const std::size_t server = std::min(path.text.find_first_of(SEPARATORS), path.text.size());
    return std::min(path.text.find_first_of(SEPARATORS, server + 1), path.text.size());
}

/// The folder that stands for the drive or share. Empty also when a path starts at the current folder of its drive, and
/// that is the one of the process.
std::string rootOf(const Parsed& path)
{
    if (path.isDrive())
    {
        std::string drive = drivesFolder() + '/' + static_cast<char>(path.text[0] | 0x20) + ':';
        if (path.isDriveRelative() && currentFolderBelow(drive)) drive.clear();
        return drive;
    }
    if (path.isVolume())
    {
        std::string name;
        appendNative(name, path.text.substr(0, path.lengthOfVolume()));
        std::ranges::transform(name, name.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c | 0x20 : c; });
        return drivesFolder() + '/' + name;
    }
    if (!path.isShare) return {};
    std::string root = drivesFolder() + "/unc/";
    appendNative(root, path.text.substr(0, endOfRoot(path)));
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
    // Two of them would make a network path.
    while (nativePath.starts_with("//")) nativePath.remove_prefix(1);
    for (;;)
    {
        const std::size_t end = nativePath.find('/');
        appendName(text, nativePath.substr(0, end));
        if (end == std::string_view::npos) return text;
        text += u'\\';
        nativePath.remove_prefix(end + 1);
    }
}

Text decodeKeepingBytes(std::string_view bytes)
{
    Text text;
    text.reserve(bytes.size());
    while (!bytes.empty())
    {
        const Sequence sequence = readSequence(bytes);
        const std::size_t length = std::max<std::size_t>(sequence.length, 1);
        if (sequence.length == 0)
            appendStray(text, bytes.substr(0, length));
        else
            appendCharacter(text, sequence.c);
        bytes.remove_prefix(length);
    }
    return text;
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
    const Parsed parsed = parse(spelling);
    std::string path = rootOf(parsed);
    const TextView rest = parsed.text.substr(endOfRoot(parsed));
    if (parsed.isDriveRelative())
    {
        if (rest.empty()) return path.empty() ? "." : path;
        if (!path.empty()) path += '/';
    }
    appendNative(path, rest);
    return path;
}

std::string nativeRootOf(TextView spelling) { return rootOf(parse(spelling)); }

bool isOnShare(TextView spelling) { return parse(spelling).isShare; }

}  // namespace Oxa_1_1::platform
