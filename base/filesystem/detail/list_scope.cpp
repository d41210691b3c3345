#include "base/filesystem/detail/list_scope.h"

namespace Oxa_1_1::detail
{

namespace
{

thread_local constinit int depth = 0;
thread_local constinit bool isRead = true;
thread_local constinit bool isSure = true;

}  // namespace

ListScope::ListScope() noexcept
{
    if (depth++ == 0) isRead = isSure = true;
}

ListScope::~ListScope() { --depth; }

void ListScope::setPartial() noexcept { isRead = false; }

void ListScope::setUnsure() noexcept { isSure = false; }

bool ListScope::wasWhole() noexcept { return isRead && isSure; }

bool ListScope::wasRead() noexcept { return isRead; }

}  // namespace Oxa_1_1::detail
