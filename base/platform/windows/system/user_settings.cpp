#include "base/platform/system/user_settings.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

namespace
{

/// An open key, closed at the end of its scope.
class Key
{
   public:
    Key(HKEY parent, TextView name)
    {
        if (RegOpenKeyExW(parent, Text(name).c_str(), 0, KEY_READ, &m_key) != ERROR_SUCCESS) m_key = nullptr;
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key()
    {
        if (m_key != nullptr) RegCloseKey(m_key);
    }
    HKEY get() const { return m_key; }

   private:
    HKEY m_key = nullptr;
};

std::optional<Setting> readValue(HKEY key, TextView name, std::size_t maxSize)
{
    Setting setting;
    setting.data.resize(maxSize);
    auto size = static_cast<DWORD>(maxSize);
    DWORD type = 0;
    auto* const data = reinterpret_cast<BYTE*>(setting.data.data());
    if (RegQueryValueExW(key, Text(name).c_str(), nullptr, &type, data, &size) != ERROR_SUCCESS) return std::nullopt;
    setting.type = type;
    setting.data.resize(size);
    return setting;
}

std::optional<Setting> readBelow(HKEY parent, std::span<const TextView> path, TextView name, std::size_t maxSize)
{
    if (path.empty()) return readValue(parent, name, maxSize);
    const Key key(parent, path.front());
    if (key.get() == nullptr) return std::nullopt;
    return readBelow(key.get(), path.subspan(1), name, maxSize);
}

}  // namespace

std::optional<Setting> readUserSetting(std::span<const TextView> path, TextView name, std::size_t maxSize)
{
    return readBelow(HKEY_CURRENT_USER, path, name, maxSize);
}

}  // namespace Oxa_1_1::platform
