#include "base/filesystem/detail/disk.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/platform/files/files.h"
#include "base/platform/system/last_error.h"
#include "base/platform/system/wide_values.h"

namespace Oxa_1_1::detail
{

namespace
{

constexpr int WRITE = 2;
constexpr int READ = 4;

bool isSeparator(Char c) noexcept { return c == '\\' || c == '/'; }

bool readTime(const String& path, platform::FileTicks platform::FileInformation::*ticks, FILETIME* time)
{
    if (time == nullptr) return false;
    const auto information = platform::readInformation(path);
    if (!information) return false;
    platform::store((*information).*ticks, *time);
    return true;
}

}  // namespace

bool readCreationTime(const String& path, FILETIME* time)
{
    return readTime(path, &platform::FileInformation::created, time);
}

bool readLastWriteTime(const String& path, FILETIME* time)
{
    return readTime(path, &platform::FileInformation::written, time);
}

bool readStatus(const String& path, struct _stat64i32& result)
{
    TextView text = path;
    const bool isRoot = text.size() < 2 || text[text.size() - 2] == ':';
    if (!isRoot && isSeparator(text.back())) text.remove_suffix(1);
    return platform::statFile(text, result);
}

bool canAccess(const String& path, int mode)
{
    const auto attributes = platform::readAttributes(path);
    if (!attributes) return false;
    // A system that grants its superuser everything would not look at the attribute.
    const bool isReadOnlyFile = (*attributes & (platform::READ_ONLY | platform::FOLDER)) == platform::READ_ONLY;
    const bool wantsToWrite = (mode & WRITE) != 0;
    if (wantsToWrite && isReadOnlyFile) return false;
    return platform::canOpen(path, (mode & READ) != 0, wantsToWrite, *attributes);
}

}  // namespace Oxa_1_1::detail
