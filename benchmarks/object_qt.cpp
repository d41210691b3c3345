// Qt's classes.

#include <QObject>
#include <memory>

#include "benchmarks/contest.h"
#include "benchmarks/object_samples.h"

namespace Oxa_1_1::bench
{

namespace
{

/// A class at a depth, as Qt's tool would describe it.
template <int DEPTH>
class Level : public Level<DEPTH - 1>
{
   public:
    static const QMetaObject staticMetaObject;
    const QMetaObject* metaObject() const override { return &staticMetaObject; }
};

template <>
class Level<-1> : public QObject
{
};

template <int DEPTH>
const QMetaObject Level<DEPTH>::staticMetaObject = {
    {&Level<DEPTH - 1>::staticMetaObject, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr}};

const bool isAdded = []
{
    const std::shared_ptr<QObject> object = std::make_shared<Level<CLASS_DEPTH>>();
    add(work::KIND_HIT, "Qt", [object] { keep(object->metaObject()->inherits(&Level<0>::staticMetaObject)); });
    static const QMetaObject STRANGER{};
    add(work::KIND_MISS, "Qt", [object] { keep(object->metaObject()->inherits(&STRANGER)); });
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
