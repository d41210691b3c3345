# Choices of the build, and the compiler settings that every part of it shares.

option(OXA_BUILD_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(OXA_BUILD_EXAMPLES "Build the examples" ${PROJECT_IS_TOP_LEVEL})
option(OXA_INSTALL "Let an installation hold the library, its headers and the package files" ${PROJECT_IS_TOP_LEVEL})
option(OXA_BUILD_BENCHMARKS "Build the benchmarks" OFF)
option(OXA_BUILD_FUZZERS "Build the fuzz targets (clang)" OFF)
set(OXA_SANITIZE "" CACHE STRING "Sanitizers to build everything with, as for -fsanitize=")
option(OXA_WITH_MFC "Register the library as an extension of MFC (MSVC with MFC)" OFF)
option(OXA_INSTALL_COMPILER_RUNTIME "Install the run-time libraries of MinGW-w64 beside the library" ON)
option(OXA_WARNINGS_AS_ERRORS "Let warnings fail the build" ${PROJECT_IS_TOP_LEVEL})

if(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
  message(FATAL_ERROR " BUILD_SHARED_LIBS=OFF: OxaBase is a shared library by design, since all modules of a process share "
    "one list of modules and classes. Leave the variable alone, or set it to ON before OxaBase is added.")
endif()

# The version of the interface stands in names of files and in the namespace; the third number does not.
set(OXA_INTERFACE_VERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

# Sources that do not go together in one compilation are not made to, whatever a parent project wishes for its own.
set(CMAKE_UNITY_BUILD OFF)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# On Windows programs find the libraries beside them.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

if(OXA_SANITIZE)
  add_compile_options(-fsanitize=${OXA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${OXA_SANITIZE})
endif()

# Linked by our own targets, and by nobody else's.
add_library(oxa_warnings INTERFACE)
if(MSVC)
  target_compile_options(oxa_warnings INTERFACE /W4 /utf-8 $<$<BOOL:${OXA_WARNINGS_AS_ERRORS}>:/WX>)
else()
  target_compile_options(oxa_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow $<$<BOOL:${OXA_WARNINGS_AS_ERRORS}>:-Werror>)
endif()
