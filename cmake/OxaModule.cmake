# oxa_add_module(<target> [PROGRAM]
#                SOURCES <source>...
#                [RESOURCES <script.rc>]
#                [TRANSLATIONS <abbreviation>=<script.rc>...])
#
# Makes a module of the suite, a shared library or a program: with a record of its own in the list of modules, with
# the resources of its script, and with translation libraries in the folder languages/ beside it. A translation is a
# file of resources for just this version of the module: its script repeats the module's version resource. Modules
# that have translations to the same language need folders of their own.
#
# Scripts are in UTF-8 and are preprocessed by the C++ compiler with the include folders of the target.

# Both systems' resources are compiled by the same compiler, so that they are the same.
find_program(OXA_WINDRES NAMES x86_64-w64-mingw32-windres windres)
find_program(OXA_RESOURCE_LINKER NAMES x86_64-w64-mingw32-ld)
mark_as_advanced(OXA_WINDRES OXA_RESOURCE_LINKER)

# Where the sources lie that every module gets: beside this file when it is installed, else in the source tree.
set(_oxa_module_folder ${CMAKE_CURRENT_LIST_DIR})
if(NOT EXISTS ${_oxa_module_folder}/base)
  cmake_path(GET _oxa_module_folder PARENT_PATH _oxa_module_folder)
endif()

function(_oxa_compile_resources target script format output)
  if(NOT OXA_WINDRES)
    message(FATAL_ERROR "Resources of ${target}: windres is missing (Debian package binutils-mingw-w64-x86-64)")
  endif()
  cmake_path(ABSOLUTE_PATH script)
  cmake_path(GET script PARENT_PATH folder)
  set(includes "$<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>")
  add_custom_command(OUTPUT ${output}
    COMMAND ${OXA_WINDRES} --preprocessor=${CMAKE_CXX_COMPILER} --preprocessor-arg=-E --preprocessor-arg=-xc++
      --preprocessor-arg=-DRC_INVOKED --preprocessor-arg=-MD --preprocessor-arg=-MF --preprocessor-arg=${output}.d
      --preprocessor-arg=-MT --preprocessor-arg=${output}
      -c 65001 -I ${folder} "$<$<BOOL:${includes}>:-I$<JOIN:${includes},;-I>>" -O ${format} ${script} ${output}
    DEPENDS ${script} DEPFILE ${output}.d COMMAND_EXPAND_LISTS VERBATIM
    COMMENT "Compiling resources ${script}")
endfunction()

# Puts the resources of a script into a target.
function(oxa_embed_resources target script)
  set(base ${CMAKE_CURRENT_BINARY_DIR}/${target}_resources)
  if(MSVC)
    set_source_files_properties(${script} PROPERTIES COMPILE_OPTIONS /c65001)
    target_sources(${target} PRIVATE ${script})
  elseif(WIN32)
    _oxa_compile_resources(${target} ${script} coff ${base}.o)
    set_source_files_properties(${base}.o PROPERTIES EXTERNAL_OBJECT ON GENERATED ON)
    target_sources(${target} PRIVATE ${base}.o)
  else()
    _oxa_compile_resources(${target} ${script} res ${base}.res)
    file(CONFIGURE OUTPUT ${base}.cpp @ONLY CONTENT [[
// The compiled resource script, between two symbols that the entry point knows.
asm(R"(
  .section .rodata.oxa_module_resources, "a", @progbits
  .balign 16
  .globl oxa_module_resources_begin, oxa_module_resources_end
  .hidden oxa_module_resources_begin, oxa_module_resources_end
oxa_module_resources_begin:
  .incbin "@base@.res"
oxa_module_resources_end:
  .previous
)");
]])
    set_source_files_properties(${base}.cpp PROPERTIES OBJECT_DEPENDS ${base}.res)
    target_sources(${target} PRIVATE ${base}.cpp)
  endif()
endfunction()

# Builds <abbreviation>.dll of a script and puts it beside the target.
function(_oxa_add_translation target abbreviation script)
  set(base ${CMAKE_CURRENT_BINARY_DIR}/${target}_languages/${abbreviation})
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/${target}_languages)
  if(MSVC)
    set_source_files_properties(${script} PROPERTIES COMPILE_OPTIONS /c65001)
    add_library(${target}_${abbreviation} MODULE ${script})
    target_include_directories(${target}_${abbreviation} PRIVATE $<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>)
    set_target_properties(${target}_${abbreviation} PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME ${abbreviation}
      LIBRARY_OUTPUT_DIRECTORY $<TARGET_FILE_DIR:${target}>/languages)
    target_link_options(${target}_${abbreviation} PRIVATE /NOENTRY)
    add_dependencies(${target} ${target}_${abbreviation})
    return()
  endif()
  if(NOT OXA_RESOURCE_LINKER)
    message(FATAL_ERROR "Translations of ${target}: x86_64-w64-mingw32-ld is missing (Debian package binutils-mingw-w64-x86-64)")
  endif()
  _oxa_compile_resources(${target} ${script} coff ${base}.o)
  add_custom_command(OUTPUT ${base}.dll
    COMMAND ${OXA_RESOURCE_LINKER} -shared --entry=0 ${base}.o -o ${base}.dll
    DEPENDS ${base}.o VERBATIM COMMENT "Linking translation ${abbreviation}.dll of ${target}")
  add_custom_target(${target}_${abbreviation} DEPENDS ${base}.dll)
  add_dependencies(${target} ${target}_${abbreviation})
  # A new translation links the module again, and so is copied.
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${base}.dll)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory $<TARGET_FILE_DIR:${target}>/languages
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${base}.dll $<TARGET_FILE_DIR:${target}>/languages/ VERBATIM)
endfunction()

# The source that attaches and detaches a module of a kind, LIBRARY or PROGRAM. Static objects of the module are to be
# made before it attaches. The entry point of a library on Windows is called behind them. Elsewhere the order is that of
# linking, which static libraries and optimisation at link time take part in.
function(_oxa_entry_sources result kind)
  if(NOT WIN32)
    set(entry linux/modules/entry/module_entry.cpp)
  elseif(kind STREQUAL PROGRAM)
    set(entry windows/modules/entry/program_entry.cpp)
  else()
    set(entry windows/modules/entry/library_entry.cpp)
  endif()
  set(${result} ${_oxa_module_folder}/base/platform/${entry} PARENT_SCOPE)
endfunction()

# So that it is neither merged with others nor moved.
function(_oxa_keep_apart entry)
  set_source_files_properties(${entry} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON SKIP_PRECOMPILE_HEADERS ON
    COMPILE_OPTIONS $<$<CXX_COMPILER_ID:GNU,Clang>:-fno-lto>)
endfunction()

# On Linux static objects are made in the order of linking. There the entry lies in an archive that the library links:
# it comes behind every static library that uses the library. Only modules ask for what is in it.
function(_oxa_link_entry target)
  if(NOT TARGET oxa_module_entry)
    _oxa_entry_sources(entry ANY)
    _oxa_keep_apart(${entry})
    add_library(oxa_module_entry STATIC EXCLUDE_FROM_ALL ${entry})
    target_include_directories(oxa_module_entry PRIVATE $<TARGET_PROPERTY:OxaBase::OxaBase,INTERFACE_INCLUDE_DIRECTORIES>)
    target_compile_features(oxa_module_entry PRIVATE cxx_std_20)
    target_compile_options(oxa_module_entry PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
    set_target_properties(oxa_module_entry PROPERTIES POSITION_INDEPENDENT_CODE ON INTERPROCEDURAL_OPTIMIZATION OFF)
  endif()
  get_target_property(library OxaBase::OxaBase ALIASED_TARGET)
  if(NOT library)
    set(library OxaBase::OxaBase)
  endif()
  get_target_property(linked ${library} INTERFACE_LINK_LIBRARIES)
  if(NOT "$<BUILD_INTERFACE:oxa_module_entry>" IN_LIST linked)
    set_property(TARGET ${library} APPEND PROPERTY INTERFACE_LINK_LIBRARIES $<BUILD_INTERFACE:oxa_module_entry>)
  endif()
  target_link_options(${target} PRIVATE LINKER:-u,oxa_module_entry)
endfunction()

function(oxa_add_module target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "PROGRAM" "RESOURCES" "SOURCES;TRANSLATIONS")
  if(arg_UNPARSED_ARGUMENTS OR NOT arg_SOURCES)
    message(FATAL_ERROR "oxa_add_module(${target}): SOURCES are missing, or arguments unknown: ${arg_UNPARSED_ARGUMENTS}")
  endif()
  set(first)
  set(last)
  if(MSVC AND arg_PROGRAM)
    _oxa_entry_sources(last PROGRAM)
  elseif(WIN32 AND arg_PROGRAM)
    # Static objects are made against the order of linking here.
    _oxa_entry_sources(first PROGRAM)
  elseif(WIN32)
    _oxa_entry_sources(first LIBRARY)
  endif()
  if(first)
    _oxa_keep_apart(${first})
  endif()
  if(arg_PROGRAM)
    add_executable(${target} ${first} ${arg_SOURCES})
  else()
    add_library(${target} SHARED ${first} ${arg_SOURCES})
    set_target_properties(${target} PROPERTIES PREFIX "")
  endif()
  target_link_libraries(${target} PRIVATE OxaBase::OxaBase)
  if(NOT WIN32)
    _oxa_link_entry(${target})
    # So that the library is really unloaded when it is closed.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
  endif()
  if(arg_RESOURCES)
    oxa_embed_resources(${target} ${arg_RESOURCES})
  endif()
  foreach(translation IN LISTS arg_TRANSLATIONS)
    if(NOT translation MATCHES "^([A-Z][A-Z][A-Z])=(.+)$")
      message(FATAL_ERROR "oxa_add_module(${target}): a translation is written DEU=script.rc, not ${translation}")
    endif()
    _oxa_add_translation(${target} ${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
  endforeach()
  target_sources(${target} PRIVATE ${_oxa_module_folder}/base/module/entry/attach.cpp ${last})
endfunction()
