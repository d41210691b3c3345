// Boost's counted pointers, and the standard library's.

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>
#include <memory>

#include "benchmarks/contest.h"

namespace Oxa_1_1::bench
{

namespace
{

struct Counted : boost::intrusive_ref_counter<Counted>
{
    Counted() = default;
    virtual ~Counted() = default;
};

const bool isAdded = []
{
    const boost::intrusive_ptr<Counted> shared(new Counted);
    const auto copyAndDrop = [shared]
    {
        boost::intrusive_ptr<Counted> copy = shared;
        keep(copy);
    };
    add(work::OWN, "boost", copyAndDrop);
    addThreads(work::OWN_SHARED, "boost", copyAndDrop);
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
