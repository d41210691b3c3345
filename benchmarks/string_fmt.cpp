#include <fmt/format.h>

#include "benchmarks/floors.h"
#include "benchmarks/shared_work.h"

namespace Oxa_1_1::bench
{

namespace
{

[[maybe_unused]] const bool registered = []
{
    add(
        work::BUILD_LIST, "fmt 8 bit",
        [name = std::string("position"), values = doublesSample()]
        {
            fmt::memory_buffer list;
            for (int i = 0; i < 100; ++i)
            {
                const double value = values[static_cast<std::size_t>(i)];
                fmt::format_to(fmt::appender(list), "{} {} {:.{}g}", name, i, value, floors::precisionOf(value));
            }
            keep(fmt::to_string(list));
        },
        100);
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
