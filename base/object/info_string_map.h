#pragma once

#include <map>
#include <utility>

#include "base/export.h"
#include "base/object/observer_info.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// Free-form information: texts under keys. Keys that differ only in letter case are the same key; the empty key
/// comes before every other.
class OXA_API InfoStringMap : public ObserverInfo
{
   public:
    /// Texts under keys, blind to case.
    using Map = std::map<String, String, StringLess2>;

    /// Expires, and holds nothing.
    InfoStringMap() = default;
    /// Expires, and holds these.
    InfoStringMap(Map infos) : m_infos(std::move(infos)) {}
    InfoStringMap(const InfoStringMap&) = default;
    InfoStringMap& operator=(const InfoStringMap&) = default;
    /// Leaves the other without entries.
    /// @{
    InfoStringMap(InfoStringMap&& other) noexcept;
    InfoStringMap& operator=(InfoStringMap&& other) noexcept;
    /// @}

    /// The class record "InfoStringMap", derived from "ObserverInfo".
    static const uZClass* Class();
    const uZClass* getClassType() const override;
    ~InfoStringMap() override;

    /// Sets the value under `key`. A key that is there already keeps its spelling.
    template <class Value>
    void addInfo(const String& key, const Value& value);

    /// The value under `key`; an empty text when there is none.
    const String& getInfoByKey(const String& key) const;
    /// Whether there is an entry under `key`.
    bool contains(const String& key) const;
    /// Takes the entry under `key` out, and says whether there was one.
    bool remove(const String& key);
    /// All entries in the order of their keys. Valid until the next change.
    const Map& getInfos() const noexcept { return m_infos; }
    /// The number of entries.
    unsigned long long getNumberInfos() const noexcept { return m_infos.size(); }
    /// Replaces all entries.
    void setInfos(const Map& infos);

   private:
    class OXA_HIDDEN ClassCreator;

    Map m_infos;
};

/// Sets the text under `key`.
template <>
OXA_API void InfoStringMap::addInfo<String>(const String& key, const String& value);

/// Any other value as the text that appending it to a String gives.
template <class Value>
void InfoStringMap::addInfo(const String& key, const Value& value)
{
    String text = String::EMPTY;
    text += value;
    addInfo<String>(key, text);
}

}  // namespace Oxa_1_1
