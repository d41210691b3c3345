#pragma once

#include "base/export.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

class Module;

/// Names an entry of a module's string table. The text is loaded when the cache is NIL; a fresh StringResource has a
/// present, empty cache, so it stands for the empty text. For the entry itself use String::loadFromResource.
class OXA_API StringResource
{
   public:
    /// Names nothing.
    StringResource() = default;
    /// The entry `id` of the module, which must outlive this.
    StringResource(unsigned int id, const Module& module) : m_id(id), m_module(&module) {}
    StringResource(const StringResource&) = default;
    StringResource& operator=(const StringResource&) = default;
    ~StringResource() = default;

    /// The cached text, loaded first when it is NIL. Not to be called by two threads at once.
    operator const String&() const;

   private:
    struct Layout;

    unsigned int m_id = 0xFFFFFFFF;
    const Module* m_module = nullptr;
    mutable String m_text = String::EMPTY;
};

}  // namespace Oxa_1_1
