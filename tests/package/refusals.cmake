# What the functions for authors, the package and the build refuse, each in one line that names what is wrong. No case
# compiles anything. Arguments: SOURCES, our tree; WORK, an empty folder; COMPILER.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK})
set(refused 0)

# A project of some lines, and the line that it must end with. A @ in both is its folder.
function(refuse line code)
  math(EXPR number "${refused} + 1")
  set(refused ${number} PARENT_SCOPE)
  set(folder ${WORK}/${number})
  string(REPLACE "@" ${folder} code "${code}")
  file(WRITE ${folder}/a.cpp "")
  file(WRITE ${folder}/a.rc "")
  file(WRITE ${folder}/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)\nproject(Refused LANGUAGES NONE)\n"
    "set_property(GLOBAL PROPERTY TARGET_SUPPORTS_SHARED_LIBS TRUE)\n${code}\n")
  string(REPLACE "@" ${folder} line "${line}")
  refuse_configuration("${line}" -S ${folder})
endfunction()

function(refuse_configuration line)
  execute_process(COMMAND ${CMAKE_COMMAND} -B ${WORK}/build${refused} -G Ninja ${ARGN}
    RESULT_VARIABLE failed OUTPUT_QUIET ERROR_VARIABLE said)
  string(FIND "${said}" "${line}\n" place)
  if(NOT failed OR place EQUAL -1)
    message(SEND_ERROR "Expected: ${line}\nSaid: ${said}")
  endif()
endfunction()

set(module "add_library(OxaBase::OxaBase SHARED IMPORTED)\ninclude(${SOURCES}/cmake/OxaModule.cmake)\n")
function(refuse_module line code)
  refuse("${line}" "${module}${code}")
  set(refused ${refused} PARENT_SCOPE)
endfunction()

refuse_module("oxa_add_module(a): SOURCES are missing" "oxa_add_module(a RESOURCES a.rc)")
refuse_module("oxa_add_module(a): unknown arguments: LIBRARY" "oxa_add_module(a LIBRARY SOURCES a.cpp)")
refuse_module("oxa_add_module(a): nothing behind RESOURCES" "oxa_add_module(a SOURCES a.cpp RESOURCES)")
refuse_module("oxa_add_module(a): there is a target of this name already"
  "add_custom_target(a)\noxa_add_module(a SOURCES a.cpp)")
refuse_module("oxa_add_module(a): the translation needs the name a_DEU, which is that of another target"
  "add_custom_target(a_DEU)\noxa_add_module(a SOURCES a.cpp TRANSLATIONS DEU=a.rc)")
refuse_module("oxa_add_module(a): there is no resource script @/b.rc" "oxa_add_module(a SOURCES a.cpp RESOURCES b.rc)")
refuse_module("oxa_add_module(a): there is no resource script @/b.rc" "oxa_add_module(a SOURCES a.cpp TRANSLATIONS DEU=b.rc)")
refuse_module("oxa_add_module(a): a translation is written DEU=script.rc, not german=a.rc"
  "oxa_add_module(a SOURCES a.cpp TRANSLATIONS german=a.rc)")
refuse_module("oxa_add_module(a): there are two translations DEU" "oxa_add_module(a SOURCES a.cpp TRANSLATIONS DEU=a.rc DEU=a.rc)")
refuse_module("oxa_add_module(a): nothing can be written to its output folder @/a.cpp/bin"
  "oxa_add_module(a SOURCES a.cpp)\nset_target_properties(a PROPERTIES LIBRARY_OUTPUT_DIRECTORY @/a.cpp/bin)")
# The clash is seen whatever way the folder is spelled, and only once the folders are known.
refuse_module("a and b both put languages/DEU.dll into @/out: give each module an output folder of its own (RUNTIME_OUTPUT_DIRECTORY, LIBRARY_OUTPUT_DIRECTORY)"
  "oxa_add_module(a SOURCES a.cpp TRANSLATIONS DEU=a.rc)
   oxa_add_module(b PROGRAM SOURCES a.cpp TRANSLATIONS DEU=a.rc FRA=a.rc)
   oxa_add_module(c SOURCES a.cpp TRANSLATIONS DEU=a.rc)
   set_target_properties(a PROPERTIES LIBRARY_OUTPUT_DIRECTORY @/x/../out/)
   set_target_properties(b PROPERTIES RUNTIME_OUTPUT_DIRECTORY @/out)")
refuse_module("a and b both put languages/DEU.dll into the installed folder suite: give each a DESTINATION of its own"
  "oxa_add_module(a SOURCES a.cpp TRANSLATIONS DEU=a.rc)
   oxa_add_module(b PROGRAM SOURCES a.cpp TRANSLATIONS DEU=a.rc)
   oxa_install_module(a DESTINATION suite)
   oxa_install_module(b DESTINATION suite)")
refuse_module("oxa_install_module(a): there is no such target" "oxa_install_module(a)")
refuse_module("oxa_install_module(a): it was not made by oxa_add_module()" "add_custom_target(a)\noxa_install_module(a)")
refuse_module("oxa_install_module(a): there is no manual @/a.pdf"
  "oxa_add_module(a SOURCES a.cpp)\noxa_install_module(a MANUALS a.pdf)")
refuse_module("oxa_install_module(a): unknown arguments: bin" "oxa_add_module(a SOURCES a.cpp)\noxa_install_module(a bin)")
refuse_module("oxa_copy_runtime(a): there is no such target" "oxa_copy_runtime(a)")
refuse_module("oxa_embed_resources(a): there is no such target" "oxa_embed_resources(a a.rc)")

refuse_configuration(" BUILD_SHARED_LIBS=OFF: OxaBase is a shared library by design, since all modules of a process share one list of modules and classes. Leave the variable alone, or set it to ON before OxaBase is added."
  -S ${SOURCES} -DBUILD_SHARED_LIBS=OFF)

# Compilations that would not fit the library.
function(refuse_compilation text)
  file(WRITE ${WORK}/program.cpp "#include \"base/object/smart_ptr.h\"\n#include \"base/string/oxa_string.h\"\n")
  execute_process(COMMAND ${COMPILER} -fsyntax-only -I ${SOURCES} ${ARGN} ${WORK}/program.cpp
    RESULT_VARIABLE failed ERROR_VARIABLE said)
  string(REGEX MATCH "error: [^\n]*" first "${said}")
  if(NOT failed OR NOT first MATCHES "${text}")
    message(SEND_ERROR "${ARGN}: expected \"${text}\", said: ${said}")
  endif()
endfunction()
refuse_compilation("OxaBase needs C[+][+]20" -std=c++17)
refuse_compilation("OxaBase cannot be used with _GLIBCXX_DEBUG" -std=c++20 -D_GLIBCXX_DEBUG)
# By its mark, as it is rarely installed.
refuse_compilation("OxaBase is not made for libc[+][+]" -std=c++20 -D_LIBCPP_VERSION=14000)
