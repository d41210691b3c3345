#include "base/platform/system/user_settings.h"

#include <utility>

#include "base/formats/registry_text.h"
#include "base/platform/linux/files/file_bytes.h"
#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/system/environment.h"

namespace Oxa_1_1::platform
{

// Settings are kept as the text that registry editors export, so that each value keeps its type: what is the key
// Software\A\B of the user on Windows is that key in the file A/B.reg of the user's settings.

std::optional<Setting> readUserSetting(std::span<const TextView> path, TextView name, std::size_t maxSize)
{
    // No key of settings comes near this.
    constexpr std::size_t MAX_FILE = std::size_t{16} << 20;
    std::string file = configurationFolder();
    if (path.empty() || file.empty()) return std::nullopt;
    Text key = u"HKEY_CURRENT_USER";
    for (const TextView level : path) key.append(1, u'\\').append(level);
    for (const TextView level : path.subspan(1)) file += '/' + nativePathOf(level);
    const auto bytes = readFileBytes(file + ".reg", MAX_FILE);
    if (!bytes) return std::nullopt;
    std::optional<formats::RegistryValue> value = formats::findRegistryValue(*bytes, key, name);
    if (!value || value->data.size() > maxSize) return std::nullopt;
    return Setting{value->type, std::move(value->data)};
}

}  // namespace Oxa_1_1::platform
