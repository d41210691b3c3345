#include <algorithm>
#include <cstdint>
#include <iterator>
#include <span>
#include <utility>

#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/text/character.h"

namespace Oxa_1_1::detail
{

namespace
{

constexpr TextView LONG_PREFIX = OXA_TEXT("\\\\?\\");
constexpr TextView LONG_SHARE_PREFIX = OXA_TEXT("\\\\?\\UNC\\");
constexpr TextView SHARE_PREFIX = OXA_TEXT("\\\\");

enum class Dots
{
    KEEP,
    COLLAPSE
};

enum class Split
{
    DONE,
    INVALID,
    BEYOND_ROOT
};

/// Adds one level; false when ".." finds none to take back.
bool addLevel(LevelList& levels, TextView name, Dots dots)
{
    if (dots == Dots::KEEP || name[0] != '.' || !isDots(name))
    {
        levels.append(name);
        return true;
    }
    if (name.size() == 1) return true;
    if (levels.empty()) return false;
    levels.dropBack();
    return true;
}

/// At most; a hint for texts that are beyond all measure. Counting in the width of the units is what vectors do
/// fastest.
std::size_t countParts(TextView text)
{
    std::uint16_t separators = 0;
    for (const Char c : text) separators = static_cast<std::uint16_t>(separators + (c == SEPARATOR));
    return separators + std::size_t{1};
}

/// Adds the parts between separators. Characters are checked before anything is said about parents.
Split splitInto(LevelList& levels, TextView text, Dots dots)
{
    levels.reserve(countParts(text));
    bool isBeyondRoot = false;
    for (std::size_t begin = 0; begin < text.size();)
    {
        std::size_t end = begin;
        while (end < text.size() && !isForbiddenInNames(text[end])) ++end;
        if (end < text.size() && text[end] != SEPARATOR) return Split::INVALID;
        const TextView name(text.data() + begin, end - begin);
        begin = end + 1;
        if (name.empty()) continue;
        if ((name.back() == ' ' || name.back() == '.') && !isDots(name)) return Split::INVALID;
        if (!addLevel(levels, name, dots)) isBeyondRoot = true;
    }
    return isBeyondRoot ? Split::BEYOND_ROOT : Split::DONE;
}

/// Why a text is no path.
struct RefusedText
{
    /// %ls stands for the text.
    const Char* message = nullptr;
    String text;

    SharedDirectory report() const
    {
        refuseText(message, text);
        return nullptr;
    }
};

SharedDirectory refuse(RefusedText& refused, const Char* message, String text)
{
    refused = {.message = message, .text = std::move(text)};
    return nullptr;
}

constexpr const Char* BEYOND_ROOT = OXA_TEXT("Invalid path '%ls': parent references go beyond root.");

Char upperLetter(Char c) noexcept { return text::detail::isAsciiLetter(c) ? static_cast<Char>(c & ~0x20) : Char(); }

/// "Volume{", 36 digits and dashes, "}" at the beginning of what follows the mark of long paths: a disk by its own
/// name, which may have no letter. Its length; 0 when it is none.
std::size_t volumeLength(TextView text)
{
    constexpr TextView BEGIN = OXA_TEXT("Volume{");
    constexpr TextView HEX = OXA_TEXT("0123456789abcdefABCDEF-");
    constexpr std::size_t DIGITS = 36;
    constexpr std::size_t LENGTH = BEGIN.size() + DIGITS + 1;
    if (text.size() < LENGTH || (text.size() > LENGTH && text[LENGTH] != SEPARATOR)) return 0;
    const bool isVolume = String(text.substr(0, BEGIN.size())).compareIgnoreCase(BEGIN) == 0 &&
                          text.substr(BEGIN.size(), DIGITS).find_first_not_of(HEX) == TextView::npos &&
                          text[LENGTH - 1] == '}';
    return isVolume ? LENGTH : 0;
}

/// What follows the root of a path on a drive or volume. `text` is what is refused.
SharedDirectory parseLevels(std::shared_ptr<ParsedDirectory> path, TextView rest, TextView text, RefusedText& refused)
{
    const Split split = splitInto(path->levels, rest, path->absolute ? Dots::COLLAPSE : Dots::KEEP);
    if (split == Split::DONE) return path;
    if (split == Split::INVALID) return refuse(refused, INVALID_CHARACTERS, text);
    path->levels.clear();
    splitInto(path->levels, rest, Dots::KEEP);
    return refuse(refused, BEYOND_ROOT, fullName(*path, SEPARATOR));
}

SharedDirectory parseVolume(TextView text, std::size_t length, RefusedText& refused)
{
    auto path = std::make_shared<ParsedDirectory>();
    path->root = String(Text(LONG_PREFIX).append(text.substr(0, length)));
    path->absolute = true;
    return parseLevels(std::move(path), text.substr(length), text, refused);
}

SharedDirectory parseLocal(TextView text, RefusedText& refused)
{
    auto path = std::make_shared<ParsedDirectory>();
    TextView rest = text;
    if (text.size() > 1 && text[1] == ':' && text[0] != ':')
    {
        const Char root[] = {upperLetter(text[0]), ':'};
        if (root[0] == 0) return refuse(refused, OXA_TEXT("Invalid drive letter in path '%ls'."), text);
        path->root = TextView(root, std::size(root));
        rest.remove_prefix(std::size(root));
    }
    path->absolute = rest.starts_with(SEPARATOR);
    return parseLevels(std::move(path), rest, text, refused);
}

SharedDirectory parseShare(TextView text, RefusedText& refused)
{
    auto path = std::make_shared<ParsedDirectory>();
    LevelList levels;
    if (splitInto(levels, text, Dots::KEEP) == Split::INVALID) return refuse(refused, INVALID_CHARACTERS, text);
    if (levels.size() < 2)
        return refuse(refused, OXA_TEXT("The network path '%ls' is missing the server and/or share name."), text);
    Text root(SHARE_PREFIX);
    root.append(levels[0].view()).append(1, SEPARATOR).append(levels[1].view());
    path->root = String(std::move(root));
    path->absolute = true;
    path->levels.append(std::span(levels).subspan(2));
    return path;
}

/// Of a text without slashes.
SharedDirectory parseAny(TextView text, RefusedText& refused)
{
    if (!text.starts_with(SHARE_PREFIX)) return parseLocal(text, refused);
    if (text.starts_with(LONG_SHARE_PREFIX))
        return parseShare(Text(text.substr(LONG_SHARE_PREFIX.size())).append(SHARE_PREFIX), refused);
    if (text.starts_with(LONG_PREFIX))
    {
        const TextView rest = text.substr(LONG_PREFIX.size());
        const std::size_t volume = volumeLength(rest);
        return volume != 0 ? parseVolume(rest, volume, refused) : parseLocal(rest, refused);
    }
    return parseShare(text.substr(SHARE_PREFIX.size()), refused);
}

}  // namespace

SharedDirectory parseLocal(TextView text)
{
    RefusedText refused;
    SharedDirectory path = parseLocal(text, refused);
    return path != nullptr ? path : refused.report();
}

SharedDirectory parseShare(TextView text)
{
    RefusedText refused;
    SharedDirectory path = parseShare(text, refused);
    return path != nullptr ? path : refused.report();
}

SharedDirectory parseDirectory(TextView text)
{
    RefusedText refused;
    SharedDirectory path = parseAny(text, refused);
    if (path != nullptr) return path;
    // No name takes a slash either, so that most texts need not be searched for one.
    if (text.find(OXA_TEXT('/')) == TextView::npos) return refused.report();
    Text converted(text);
    std::ranges::replace(converted, OXA_TEXT('/'), SEPARATOR);
    path = parseAny(converted, refused);
    return path != nullptr ? path : refused.report();
}

bool normalizeLevels(ParsedDirectory& path)
{
    if (std::ranges::none_of(path.levels, [](const String& level) { return isDots(level); })) return true;
    LevelList kept;
    kept.reserve(path.levels.size());
    for (const String& level : path.levels)
    {
        if (addLevel(kept, level, Dots::COLLAPSE)) continue;
        refuseText(BEYOND_ROOT, fullName(path, SEPARATOR));
        return false;
    }
    path.levels = std::move(kept);
    return true;
}

}  // namespace Oxa_1_1::detail
