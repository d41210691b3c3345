#include "extras/memory_file_system/memory_item.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "base/diagnostics/windows_error.h"
#include "base/filesystem/search_string.h"

namespace Oxa_1_1
{

namespace
{

constexpr TextView PREFIX = OXA_TEXT("mem:");

bool isSameName(const String& a, const String& b) { return a.compareIgnoreCase(b) == 0; }

bool storeTicks(std::uint64_t ticks, FILETIME* time)
{
    if (time == nullptr) return false;
    std::memcpy(static_cast<void*>(time), &ticks, sizeof ticks);
    return true;
}

}  // namespace

bool isMemoryName(const String& name)
{
    return isValidSearchString(name) && name.view().find_first_of(OXA_TEXT("*?")) == TextView::npos;
}

std::optional<MemoryPlace> MemoryPlace::parse(const String& text, const std::shared_ptr<MemoryVolume>& volume)
{
    if (!text.view().starts_with(PREFIX)) return std::nullopt;
    String rest = text.view().substr(PREFIX.size());
    rest.replace(OXA_TEXT('\\'), OXA_TEXT('/'));
    MemoryPlace place{.volume = volume, .isAbsolute = rest.startsWith("/"), .path = {}};
    TextView view = rest;
    while (!view.empty())
    {
        const String name = view.substr(0, view.find(OXA_TEXT('/')));
        view.remove_prefix(std::min(view.size(), name.view().size() + 1));
        if (name.isEmpty()) continue;
        if (name != "." && name != ".." && !isMemoryName(name)) return std::nullopt;
        place.path.push_back(name);
    }
    if (place.isAbsolute && !place.normalize()) return std::nullopt;
    return place;
}

String MemoryPlace::fullName(const String& name) const
{
    String text = PREFIX;
    if (isAbsolute) text << OXA_TEXT('/');
    for (const String& level : path) text << level << OXA_TEXT('/');
    return text << name;
}

bool MemoryPlace::normalize()
{
    MemoryPath kept;
    for (const String& level : path)
    {
        if (level == ".") continue;
        if (level != "..")
            kept.push_back(level);
        else if (kept.empty())
            return false;
        else
            kept.pop_back();
    }
    path = kept;
    return true;
}

MemoryPath MemoryPlace::pathOf(const String& name) const
{
    MemoryPath result = path;
    result.push_back(name);
    return result;
}

bool MemoryPlace::isSame(const MemoryPlace& other) const
{
    return volume == other.volume && std::ranges::equal(path, other.path, isSameName);
}

std::optional<MemoryPlace> MemoryPlace::absolute() const
{
    MemoryPlace place = *this;
    place.isAbsolute = true;
    return place.normalize() ? std::optional(place) : std::nullopt;
}

std::optional<MemoryPlace> MemoryPlace::relativeTo(const MemoryPlace& reference) const
{
    const auto start = reference.absolute();
    const auto end = absolute();
    if (!start || !end) return std::nullopt;
    const auto [from, to] = std::ranges::mismatch(start->path, end->path, isSameName);
    MemoryPlace place{.volume = volume, .isAbsolute = false, .path = {}};
    place.path.assign(static_cast<std::size_t>(start->path.end() - from), OXA_TEXT(".."));
    place.path.insert(place.path.end(), to, end->path.end());
    return place;
}

void splitMemoryName(const String& name, String& baseName, String& extension)
{
    const int period = name.findLastOf(OXA_TEXT('.'));
    baseName = period < 0 ? name : name.substr(0, period);
    extension = period < 0 ? String::EMPTY : name.substr(period + 1);
}

bool storeCreationTime(const std::optional<MemoryVolume::Status>& status, FILETIME* time)
{
    return status && storeTicks(status->created, time);
}

bool storeLastWriteTime(const std::optional<MemoryVolume::Status>& status, FILETIME* time)
{
    return status && storeTicks(status->written, time);
}

bool storeStatus(const std::optional<MemoryVolume::Status>& status, struct _stat64i32& result)
{
    if (!status) return false;
    result = {};
    result.st_size = static_cast<decltype(result.st_size)>(status->size);
    return true;
}

bool allowsAccess(const std::optional<MemoryVolume::Status>& status, int mode)
{
    constexpr int WRITE = 2;
    return status && ((mode & WRITE) == 0 || !status->isReadOnly);
}

void reportMemoryFailure(const Char* what, const String& path, MemoryError code)
{
    String message = what;
    message << OXA_TEXT(" '") << path << OXA_TEXT("'.\r\nWindows error message: ") << getWindowsError(code);
    FileSystemItem::reportError(message);
}

}  // namespace Oxa_1_1
