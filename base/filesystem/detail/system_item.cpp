#include "base/filesystem/detail/system_item.h"

#include "base/filesystem/detail/items.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

String seamPath(const FileSystemItem& item)
{
    const auto* const file = dynamic_cast<const File*>(&item);
    const auto* const directory = dynamic_cast<const Directory*>(&item);
    const bool isOwn = (file != nullptr && windowsImpl(*file) != nullptr) ||
                       (directory != nullptr && windowsImpl(*directory) != nullptr);
    if (isOwn) return item.getFullNameUnicode();
    platform::failStep(platform::NOT_SUPPORTED, "useDisk", item.getFullName());
    return {};
}

}  // namespace Oxa_1_1::detail
