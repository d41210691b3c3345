#pragma once

#include <cstdint>
#include <vector>

#include "base/char.h"
#include "base/formats/resource_index.h"
#include "base/platform/platform_types.h"

/// Resources that the library reads itself, with the results that the system's own calls have.
namespace Oxa_1_1::platform
{

/// Every language version, ascending. Names and types are texts or, as pointers below 65536, numbers.
formats::ResourceIndex::Entries resourceVersions(const formats::ResourceIndex& resources, const Char* type,
                                                 const Char* name) noexcept;

/// The version in the language of the thread, the user's, none, English, or else the first; null of none.
HRSRC preferredVersion(formats::ResourceIndex::Entries versions) noexcept;
/// The version in just this language; null when there is none.
HRSRC versionIn(formats::ResourceIndex::Entries versions, std::uint16_t language) noexcept;

std::vector<std::uint16_t> languagesOf(formats::ResourceIndex::Entries versions);

/// What a handle of the two functions above stands for.
std::span<const std::byte> indexedBytes(HRSRC version) noexcept;

/// An entry of the string table; empty when there is none.
Text indexedString(const formats::ResourceIndex& resources, unsigned int id);

}  // namespace Oxa_1_1::platform
