#include "base/object/observer_info.h"

#include <memory>

#include "base/module/module.h"
#include "base/object/creatable_class.h"
#include "base/platform/never_destroyed.h"

namespace Oxa_1_1
{

ObserverInfo::~ObserverInfo() = default;

const uZClass* ObserverInfo::getClassType() const { return Class(); }

const uZClass* ObserverInfo::Class()
{
    class BaseClass final : public CreateableUZClass<ObserverInfo>, public CreateableFromClass<ObserverInfo>
    {
       public:
        BaseClass() : CreateableUZClass(OXA_TEXT("ObserverInfo"), getThisModule(), ClassVersion()) {}
        std::shared_ptr<ObserverInfo> create() const override { return std::make_shared<ObserverInfo>(); }
    };
    static const platform::NeverDestroyed<BaseClass> record;
    return &record.get();
}

}  // namespace Oxa_1_1
