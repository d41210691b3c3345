#pragma once

// The few system types that appear in public signatures. On Windows these are the system's own, declared alike here
// so that callers are spared its header; elsewhere they stand for the same things, with the same layout.

#include <cstdint>

#ifdef _WIN32
using DWORD = unsigned long;
#else
using DWORD = std::uint32_t;
#endif

// NOLINTBEGIN(bugprone-reserved-identifier): the system's own names.
/// A code module (program, shared library) or a file of resources, as the loader knows it.
using HINSTANCE = struct HINSTANCE__*;
/// A resource within a module.
using HRSRC = struct HRSRC__*;
// NOLINTEND(bugprone-reserved-identifier)
/// A locale: a language in the low 16 bits, a sort order above.
using LCID = DWORD;
