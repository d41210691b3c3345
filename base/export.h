#pragma once

/// @file
/// Marks of names that are seen outside, and of constants; and what a compilation must be like to use the library.

#if (defined(_MSVC_LANG) ? _MSVC_LANG : __cplusplus) < 202002L
#error "OxaBase needs C++20 or later: -std=c++20, /std:c++20, or CMake's target_compile_features(... cxx_std_20)"
#endif
#include <version>
#ifdef _LIBCPP_VERSION
#error "OxaBase is not made for libc++, whose types differ: use libstdc++, clang's default beside GCC"
#endif
#ifdef _GLIBCXX_DEBUG
#error "OxaBase cannot be used with _GLIBCXX_DEBUG, which changes the layout of standard types"
#endif

/// Marks what the shared library offers. Everything else stays hidden.
/// OXA_BUILDING is defined while the library itself is compiled.
#ifdef _WIN32
#ifdef OXA_BUILDING
#define OXA_API __declspec(dllexport)
#else
#define OXA_API __declspec(dllimport)
#endif
#else
#define OXA_API __attribute__((visibility("default")))
#endif

/// Marks what every shared library and program has a copy of its own of, and members of exported classes that only the
/// library itself calls. On Windows the members of an exported class are exported together.
#ifdef _WIN32
#define OXA_HIDDEN
#else
#define OXA_HIDDEN __attribute__((visibility("hidden")))
#endif

/// Marks the one static object of a source file that is made before those of other files, and so outlives them.
#ifdef _MSC_VER
#define OXA_MADE_FIRST __pragma(init_seg(lib))
#else
#define OXA_MADE_FIRST __attribute__((init_priority(101)))
#endif

/// For constants of text: constant-initialised. Clang before 17 cannot evaluate GCC's std::basic_string at compile
/// time; there they are the first to be initialised.
#if defined(__clang__) && __clang_major__ < 17
#define OXA_CONSTINIT __attribute__((init_priority(101)))
#elif defined(_MSC_VER)
// Its containers allocate in debug builds.
#define OXA_CONSTINIT
#else
#define OXA_CONSTINIT constinit
#endif
