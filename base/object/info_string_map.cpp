#include "base/object/info_string_map.h"

#include <memory>
#include <utility>

#include "base/module/module.h"
#include "base/object/creatable_class.h"
#include "base/platform/never_destroyed.h"

namespace Oxa_1_1
{

/// Info maps are made by those who fill them, never from the record alone.
class InfoStringMap::ClassCreator final : public CreateableUZClass<InfoStringMap>,
                                          public CreateableFromClass<InfoStringMap>
{
   public:
    ClassCreator()
        : CreateableUZClass(OXA_TEXT("InfoStringMap"), ObserverInfo::Class(), getThisModule(), ClassVersion())
    {
    }
    std::shared_ptr<InfoStringMap> create() const override { return nullptr; }
};

InfoStringMap::~InfoStringMap() = default;

InfoStringMap::InfoStringMap(InfoStringMap&& other) noexcept
    : ObserverInfo(other), m_infos(std::exchange(other.m_infos, {}))
{
}

InfoStringMap& InfoStringMap::operator=(InfoStringMap&& other) noexcept
{
    ObserverInfo::operator=(other);
    if (this != &other) m_infos = std::exchange(other.m_infos, {});
    return *this;
}

const uZClass* InfoStringMap::getClassType() const { return Class(); }

const uZClass* InfoStringMap::Class()
{
    static const platform::NeverDestroyed<ClassCreator> record;
    return &record.get();
}

template <>
void InfoStringMap::addInfo<String>(const String& key, const String& value)
{
    m_infos[key] = value;
}

const String& InfoStringMap::getInfoByKey(const String& key) const
{
    const auto found = m_infos.find(key);
    return found != m_infos.end() ? found->second : String::EMPTY;
}

bool InfoStringMap::contains(const String& key) const { return m_infos.find(key) != m_infos.end(); }

bool InfoStringMap::remove(const String& key) { return m_infos.erase(key) != 0; }

void InfoStringMap::setInfos(const Map& infos)
{
    if (&infos != &m_infos) m_infos = infos;
}

}  // namespace Oxa_1_1
