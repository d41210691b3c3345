# What cpack makes of an installed copy: an archive and a Debian package on Linux, a zip file on Windows.

string(TOLOWER ${CMAKE_SYSTEM_NAME} system_name)
set(CPACK_PACKAGE_NAME OxaBase)
set(CPACK_PACKAGE_VENDOR "The maintainers of OxaBase")
set(CPACK_PACKAGE_CONTACT "The maintainers of OxaBase <maintainers@oxabase.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_FILE_NAME OxaBase-${PROJECT_VERSION}-${system_name}-x86_64)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR TGZ DEB)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_NAME oxabase-${OXA_INTERFACE_VERSION})
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Text with a NIL state, reference-counted objects with class records, modules
with resources and translations, files by Windows spellings, assertions and
call stacks, scan points. The shared library, its headers, the CMake package,
the pkg-config file, views for gdb and the documentation.")
# What authors of modules use; windres compiles their resources.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "g++, cmake, pkg-config, binutils-mingw-w64-x86-64, gdb")
# By which packages of programs find that they depend on this one.
file(WRITE ${PROJECT_BINARY_DIR}/shlibs "libOxaBase ${OXA_INTERFACE_VERSION} oxabase-${OXA_INTERFACE_VERSION} (>= ${PROJECT_VERSION})\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/shlibs)
find_program(OXA_SHLIBDEPS dpkg-shlibdeps)
find_program(OXA_FILE file)
mark_as_advanced(OXA_SHLIBDEPS OXA_FILE)
if(OXA_SHLIBDEPS AND OXA_FILE)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
else()
  message(STATUS "dpkg-shlibdeps or file: not found, a Debian package would not name the libraries that it needs")
endif()

include(CPack)
