#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/char.h"
#include "base/platform/platform_types.h"

/// The resources of modules. Names and types are texts or, as pointers below 65536, numbers.
namespace Oxa_1_1::platform
{

/// Makes the compiled resource script of a module known, where the system's modules have no resources of their own.
/// The bytes stay where they are until they are withdrawn.
void offerResources(HINSTANCE module, std::span<const std::byte> compiledScript);
void withdrawResources(HINSTANCE module) noexcept;

/// The resource in the language that the system prefers; null when there is none.
HRSRC findResource(HINSTANCE module, const Char* type, const Char* name) noexcept;

/// The resource in just this language; null when there is none.
HRSRC findResource(HINSTANCE module, const Char* type, const Char* name, std::uint16_t language) noexcept;

/// The languages in which the resource exists, ascending.
std::vector<std::uint16_t> resourceLanguages(HINSTANCE module, const Char* type, const Char* name);

/// The bytes of a found resource.
std::span<const std::byte> resourceBytes(HINSTANCE module, HRSRC resource) noexcept;

/// An entry of the string table; empty when there is none.
Text loadString(HINSTANCE module, unsigned int id);

}  // namespace Oxa_1_1::platform
