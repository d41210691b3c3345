#pragma once

/// What the compiler keeps about the types of objects.
namespace Oxa_1_1::platform
{

/// Whether the table of virtual functions of `object` leads to its type, so that dynamic_cast may ask for it. Modules
/// can be built without.
bool hasRunTimeType(const void* object) noexcept;

}  // namespace Oxa_1_1::platform
