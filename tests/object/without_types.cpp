// Compiled without run-time types, as a module may be.

#include "base/module/module.h"
#include "base/object/uz_class.h"

namespace Oxa_1_1::test
{

const uZClass* recordWithoutTypes()
{
    struct Untyped final : uZClass
    {
        using uZClass::uZClass;
    };
    static const Untyped record(OXA_TEXT("Untyped"), getThisModule(), ClassVersion());
    return &record;
}

}  // namespace Oxa_1_1::test
