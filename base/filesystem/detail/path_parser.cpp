#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/text/character.h"
#include "base/text/scan.h"

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
bool addLevel(std::vector<String>& levels, TextView name, Dots dots)
{
    if (dots == Dots::KEEP || name[0] != '.' || !isDots(name))
    {
        levels.emplace_back(name);
        return true;
    }
    if (name.size() == 1) return true;
    if (levels.empty()) return false;
    levels.pop_back();
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
Split splitInto(std::vector<String>& levels, TextView text, Dots dots)
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

void reportBeyondRoot(const ParsedDirectory& path)
{
    refuseText(OXA_TEXT("Invalid path '%ls': parent references go beyond root."), fullName(path, SEPARATOR));
}

Char upperLetter(Char c) noexcept { return text::detail::isAsciiLetter(c) ? static_cast<Char>(c & ~0x20) : Char(); }

}  // namespace

SharedDirectory parseLocal(TextView text)
{
    auto path = std::make_shared<ParsedDirectory>();
    TextView rest = text;
    if (text.find(OXA_TEXT(':')) == 1)
    {
        const Char drive = upperLetter(text[0]);
        if (drive == 0)
        {
            refuseText(OXA_TEXT("Invalid drive letter in path '%ls'."), text);
            return nullptr;
        }
        path->root = String(Text{drive, OXA_TEXT(':')});
        rest.remove_prefix(2);
    }
    path->absolute = rest.starts_with(SEPARATOR);

    const Split split = splitInto(path->levels, rest, path->absolute ? Dots::COLLAPSE : Dots::KEEP);
    if (split == Split::DONE) return path;
    if (split == Split::INVALID)
    {
        refuseText(INVALID_CHARACTERS, text);
        return nullptr;
    }
    path->levels.clear();
    splitInto(path->levels, rest, Dots::KEEP);
    reportBeyondRoot(*path);
    return nullptr;
}

SharedDirectory parseShare(TextView text)
{
    auto path = std::make_shared<ParsedDirectory>();
    auto& levels = path->levels;
    if (splitInto(levels, text, Dots::KEEP) == Split::INVALID)
    {
        refuseText(INVALID_CHARACTERS, text);
        return nullptr;
    }
    if (levels.size() < 2)
    {
        refuseText(OXA_TEXT("The network path '%ls' is missing the server and/or share name."), text);
        return nullptr;
    }
    Text root(SHARE_PREFIX);
    root.append(levels[0].view()).append(1, SEPARATOR).append(levels[1].view());
    path->root = String(std::move(root));
    path->absolute = true;
    levels.erase(levels.begin(), levels.begin() + 2);
    return path;
}

SharedDirectory parseDirectory(TextView text)
{
    Text converted;
    if (text::findUnit(text.data(), text.size(), OXA_TEXT('/')) != text::NOT_FOUND)
    {
        converted = text;
        std::ranges::replace(converted, OXA_TEXT('/'), SEPARATOR);
        text = converted;
    }
    if (!text.starts_with(SHARE_PREFIX)) return parseLocal(text);
    if (text.starts_with(LONG_SHARE_PREFIX))
        return parseShare(Text(text.substr(LONG_SHARE_PREFIX.size())).append(SHARE_PREFIX));
    if (text.starts_with(LONG_PREFIX)) return parseLocal(text.substr(LONG_PREFIX.size()));
    return parseShare(text.substr(SHARE_PREFIX.size()));
}

bool normalizeLevels(ParsedDirectory& path)
{
    std::vector<String> kept;
    kept.reserve(path.levels.size());
    for (const String& level : path.levels)
    {
        if (addLevel(kept, level, Dots::COLLAPSE)) continue;
        reportBeyondRoot(path);
        return false;
    }
    path.levels = std::move(kept);
    return true;
}

}  // namespace Oxa_1_1::detail
