#include <algorithm>
#include <utility>

#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/file_system_item.h"
#include "base/platform/files/files.h"

namespace Oxa_1_1::detail
{

namespace
{

std::size_t fullLength(const ParsedDirectory& path, TextView name)
{
    std::size_t length = path.root.view().size() + 2 + name.size();
    for (const String& level : path.levels) length += level.view().size() + 1;
    return length;
}

void appendPath(Text& text, const ParsedDirectory& path, Char separator)
{
    const std::size_t begin = text.size();
    text += path.root.view();
    if (separator != SEPARATOR) std::ranges::replace(text, SEPARATOR, separator);
    if (path.absolute) text += separator;
    for (const String& level : path.levels) (text += level.view()) += separator;
    if (text.size() == begin) (text += OXA_TEXT('.')) += separator;
}

/// Most are the same to the letter.
bool isSameLevel(const String& a, const String& b) noexcept
{
    return a.length() == b.length() && (a.view() == b.view() || a.compareIgnoreCase(b) == 0);
}

int driveNumber(Char letter) noexcept { return letter == 0 ? 0 : letter - 'A' + 1; }

}  // namespace

String fullName(const ParsedDirectory& path, Char separator, TextView name)
{
    Text text;
    text.reserve(fullLength(path, name));
    appendPath(text, path, separator);
    text += name;
    return String(std::move(text));
}

String longName(const ParsedDirectory& path, TextView name)
{
    if (!path.absolute) return fullName(path, SEPARATOR, name);
    constexpr TextView SHARE = OXA_TEXT("\\\\?\\UNC\\");
    constexpr TextView LOCAL = OXA_TEXT("\\\\?\\");
    Text text;
    text.reserve(fullLength(path, name) + SHARE.size());
    // A volume has no other spelling.
    if (path.root.view().starts_with(LOCAL)) return fullName(path, SEPARATOR, name);
    const bool isShare = path.root.view().starts_with(OXA_TEXT("\\\\"));
    text = isShare ? SHARE : LOCAL;
    appendPath(text, path, SEPARATOR);
    if (isShare) text.erase(SHARE.size(), 2);
    text += name;
    return String(std::move(text));
}

String readablePath(const ParsedDirectory& path)
{
    const bool hasDots = std::ranges::any_of(path.levels, [](const String& level) { return isDots(level); });
    return hasDots ? fullName(path, SEPARATOR) : longName(path);
}

std::shared_ptr<ParsedDirectory> copyForChange(const ParsedDirectory& path)
{
    return std::make_shared<ParsedDirectory>(path);
}

std::shared_ptr<ParsedDirectory> appendLevel(const ParsedDirectory& path, TextView level)
{
    auto copy = copyForChange(path);
    copy->levels.append(level);
    return copy;
}

SharedDirectory makeAbsolute(const SharedDirectory& path)
{
    if (path->absolute) return path;
    const Text current = platform::currentFolder(driveNumber(path->driveLetter()));
    if (current.empty())
    {
        FileSystemItem::reportError(OXA_TEXT("Failed to get the current working directory."));
        return nullptr;
    }
    const SharedDirectory start = parseDirectory(current);
    if (start == nullptr)
    {
        FileSystemItem::reportError(OXA_TEXT("Current working directory is invalid."));
        return nullptr;
    }
    auto result = copyForChange(*start);
    result->levels.append(path->levels);
    if (!normalizeLevels(*result)) return nullptr;
    return result;
}

SharedDirectory makeRelative(const SharedDirectory& path, const ParsedDirectory& reference)
{
    if (path->driveLetter() != reference.driveLetter()) return path;
    const auto [from, to] = std::ranges::mismatch(reference.levels, path->levels, isSameLevel);
    const auto up = static_cast<std::size_t>(reference.levels.end() - from);
    auto result = std::make_shared<ParsedDirectory>();
    LevelWriter levels(up + static_cast<std::size_t>(path->levels.end() - to));
    for (std::size_t i = 0; i < up; ++i) levels.append(OXA_TEXT(".."));
    std::for_each(to, path->levels.end(), [&](const String& level) { levels.append(level); });
    result->levels = levels.take();
    return result;
}

bool isSamePath(const ParsedDirectory& a, const ParsedDirectory& b) noexcept
{
    if (&a == &b) return true;
    return a.root.compareIgnoreCase(b.root) == 0 && std::ranges::equal(a.levels, b.levels, isSameLevel);
}

}  // namespace Oxa_1_1::detail
