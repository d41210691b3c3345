#pragma once

#include "base/export.h"

namespace Oxa_1_1
{

/// Common root of what visitors visit.
class VisitorCore
{
};

}  // namespace Oxa_1_1
