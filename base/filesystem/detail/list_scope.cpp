#include "base/filesystem/detail/list_scope.h"

namespace Oxa_1_1::detail
{

namespace
{

thread_local constinit int depth = 0;
thread_local constinit bool isWhole = true;

}  // namespace

ListScope::ListScope() noexcept
{
    if (depth++ == 0) isWhole = true;
}

ListScope::~ListScope() { --depth; }

void ListScope::setPartial() noexcept { isWhole = false; }

bool ListScope::wasWhole() noexcept { return isWhole; }

}  // namespace Oxa_1_1::detail
