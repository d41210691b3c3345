#pragma once

#include "base/platform/files/links.h"

/// The operations of links.h as each system makes them.
namespace Oxa_1_1::platform::native
{

Text readLink(TextView path);
bool createLink(TextView path, TextView target, LinkKind kind);

}  // namespace Oxa_1_1::platform::native
