#include "base/module/string_resource.h"

#include <cstddef>

#include "base/module/module.h"

namespace Oxa_1_1
{

StringResource::operator const String&() const
{
    if (m_text.isNil() && m_module != nullptr) m_text = String::loadFromResource(m_id, *m_module);
    return m_text;
}

/// Modules that were built separately rely on these places.
struct StringResource::Layout
{
    static_assert(offsetof(StringResource, m_id) == 0);
    static_assert(offsetof(StringResource, m_module) == sizeof(void*));
    static_assert(offsetof(StringResource, m_text) == 2 * sizeof(void*));
};

}  // namespace Oxa_1_1
