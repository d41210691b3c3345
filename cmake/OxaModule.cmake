# For those who build on the library, installed or added to their own build. Every function refuses what it cannot do in
# one line that names the target.
#
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
#
# oxa_copy_runtime(<target>)
#
# Puts what a program needs to start beside it when it is built: the library, and with MinGW the compiler's run-time
# libraries. Does nothing on Linux, where a program remembers where it was linked.
#
# oxa_install_module(<target> [DESTINATION <folder>] [MANUALS <file.pdf>...] [COMPONENT <name>] [RUNTIME])
#
# Installs a module with its translations and its manuals beside it: a program, and on Windows a library, in bin/, else
# in lib/. RUNTIME puts the library there, too, and on Windows the compiler's run-time libraries, so that the folder
# can be taken elsewhere.

# Both systems' resources are compiled by the same compiler, so that they are the same.
find_program(OXA_WINDRES NAMES x86_64-w64-mingw32-windres windres)
find_program(OXA_RESOURCE_LINKER NAMES x86_64-w64-mingw32-ld)
mark_as_advanced(OXA_WINDRES OXA_RESOURCE_LINKER)

# The text stands alone in its line, however long it is.
function(_oxa_fail text)
  message(FATAL_ERROR " ${text}")
endfunction()

# Where the sources lie that every module gets: beside this file when it is installed, else in the source tree. The
# functions may be called where no variable of this file is known.
function(_oxa_module_folder result)
  set(folder ${CMAKE_CURRENT_FUNCTION_LIST_DIR})
  if(NOT EXISTS ${folder}/base)
    cmake_path(GET folder PARENT_PATH folder)
  endif()
  set(${result} ${folder} PARENT_SCOPE)
endfunction()

# The run-time libraries of MinGW, which no Windows has. None for other compilers.
function(_oxa_compiler_runtime result)
  set(files "")
  if(MINGW)
    foreach(library libstdc++-6 libgcc_s_seh-1 libwinpthread-1)
      execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}.dll
        OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
      # The bare name of one that the compiler does not have.
      if(IS_ABSOLUTE "${file}")
        list(APPEND files ${file})
      endif()
    endforeach()
  endif()
  set(${result} ${files} PARENT_SCOPE)
endfunction()

# Fails when an input is not there. What belongs to the build may be made later.
function(_oxa_check_file caller kind file)
  cmake_path(ABSOLUTE_PATH file)
  cmake_path(IS_PREFIX CMAKE_BINARY_DIR ${file} NORMALIZE is_built)
  if(is_built AND NOT CMAKE_BINARY_DIR STREQUAL CMAKE_SOURCE_DIR)
    return()
  endif()
  if(NOT EXISTS ${file} OR IS_DIRECTORY ${file})
    _oxa_fail("${caller}: there is no ${kind} ${file}")
  endif()
endfunction()

function(_oxa_compile_resources target script format output)
  if(NOT OXA_WINDRES)
    _oxa_fail("Resources of ${target}: windres is missing (Debian package binutils-mingw-w64-x86-64)")
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
  if(NOT TARGET ${target})
    _oxa_fail("oxa_embed_resources(${target}): there is no such target")
  endif()
  _oxa_check_file("oxa_embed_resources(${target})" "resource script" ${script})
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
    _oxa_fail("Translations of ${target}: x86_64-w64-mingw32-ld is missing (Debian package binutils-mingw-w64-x86-64)")
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
  _oxa_module_folder(folder)
  set(${result} ${folder}/base/platform/${entry} PARENT_SCOPE)
endfunction()

# Fails unless everything can be done, with the languages of the translations as the result.
function(_oxa_check_module result target)
  cmake_parse_arguments(PARSE_ARGV 2 arg "PROGRAM" "RESOURCES" "SOURCES;TRANSLATIONS")
  set(caller "oxa_add_module(${target})")
  if(arg_UNPARSED_ARGUMENTS)
    _oxa_fail("${caller}: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  elseif(arg_KEYWORDS_MISSING_VALUES)
    _oxa_fail("${caller}: nothing behind ${arg_KEYWORDS_MISSING_VALUES}")
  elseif(NOT arg_SOURCES)
    _oxa_fail("${caller}: SOURCES are missing")
  elseif(TARGET ${target})
    _oxa_fail("${caller}: there is a target of this name already")
  endif()
  if(arg_RESOURCES)
    _oxa_check_file("${caller}" "resource script" ${arg_RESOURCES})
  endif()
  set(languages "")
  foreach(translation IN LISTS arg_TRANSLATIONS)
    if(NOT translation MATCHES "^([A-Z][A-Z][A-Z])=(.+)$")
      _oxa_fail("${caller}: a translation is written DEU=script.rc, not ${translation}")
    elseif(CMAKE_MATCH_1 IN_LIST languages)
      _oxa_fail("${caller}: there are two translations ${CMAKE_MATCH_1}")
    elseif(TARGET ${target}_${CMAKE_MATCH_1})
      _oxa_fail("${caller}: the translation needs the name ${target}_${CMAKE_MATCH_1}, which is that of another target")
    endif()
    list(APPEND languages ${CMAKE_MATCH_1})
    _oxa_check_file("${caller}" "resource script" ${CMAKE_MATCH_2})
  endforeach()
  set(${result} ${languages} PARENT_SCOPE)
endfunction()

# The folder that a target is built in, as far as it is known before the build is generated.
function(_oxa_output_folder result target)
  get_target_property(kind ${target} TYPE)
  set(property LIBRARY_OUTPUT_DIRECTORY)
  if(WIN32 OR kind STREQUAL EXECUTABLE)
    set(property RUNTIME_OUTPUT_DIRECTORY)
  endif()
  get_target_property(here ${target} BINARY_DIR)
  string(TOUPPER "${CMAKE_BUILD_TYPE}" configuration)
  get_target_property(folder ${target} ${property}_${configuration})
  if(NOT configuration OR NOT folder)
    get_target_property(folder ${target} ${property})
  endif()
  if(NOT folder)
    set(folder ${here})
  endif()
  cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY ${here} NORMALIZE)
  string(REGEX REPLACE "/$" "" folder "${folder}")
  set(${result} ${folder} PARENT_SCOPE)
endfunction()

# Runs when everything else is read, since output folders are usually set behind oxa_add_module().
function(_oxa_check_output_folders)
  get_property(modules GLOBAL PROPERTY OXA_MODULES)
  foreach(target IN LISTS modules)
    _oxa_output_folder(folder ${target})
    if(NOT folder MATCHES "\\$<")
      # What cannot be made may still be there; what is there may still take no file.
      execute_process(COMMAND ${CMAKE_COMMAND} -E make_directory ${folder} OUTPUT_QUIET ERROR_QUIET)
      execute_process(COMMAND ${CMAKE_COMMAND} -E touch ${folder}/.${target}.writable RESULT_VARIABLE failed
        OUTPUT_QUIET ERROR_QUIET)
      if(failed)
        _oxa_fail("oxa_add_module(${target}): nothing can be written to its output folder ${folder}")
      endif()
      file(REMOVE ${folder}/.${target}.writable)
    endif()
    get_target_property(languages ${target} OXA_LANGUAGES)
    _oxa_claim_languages(${folder} ${target} "${languages}"
      "give each module an output folder of its own (RUNTIME_OUTPUT_DIRECTORY, LIBRARY_OUTPUT_DIRECTORY)")
  endforeach()
endfunction()

# One folder holds one translation to a language: a second one would replace it.
function(_oxa_claim_languages folder target languages advice)
  string(TOLOWER "${folder}" key)
  foreach(language IN LISTS languages)
    get_property(owner GLOBAL PROPERTY "OXA_OWNER ${key} ${language}")
    if(owner AND NOT owner STREQUAL target)
      _oxa_fail("${owner} and ${target} both put languages/${language}.dll into ${folder}: ${advice}")
    endif()
    set_property(GLOBAL PROPERTY "OXA_OWNER ${key} ${language}" ${target})
  endforeach()
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
  _oxa_check_module(languages ${target} ${ARGN})
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
    string(REGEX MATCH "^(...)=(.+)$" parts ${translation})
    _oxa_add_translation(${target} ${CMAKE_MATCH_1} ${CMAKE_MATCH_2})
  endforeach()
  _oxa_module_folder(folder)
  target_sources(${target} PRIVATE ${folder}/base/module/entry/attach.cpp ${last})

  set_target_properties(${target} PROPERTIES OXA_LANGUAGES "${languages}")
  get_property(modules GLOBAL PROPERTY OXA_MODULES)
  if(NOT modules)
    cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL _oxa_check_output_folders)
  endif()
  set_property(GLOBAL APPEND PROPERTY OXA_MODULES ${target})
endfunction()

function(oxa_copy_runtime target)
  set(caller "oxa_copy_runtime(${target})")
  if(ARGN)
    _oxa_fail("${caller}: unknown arguments: ${ARGN}")
  elseif(NOT TARGET ${target})
    _oxa_fail("${caller}: there is no such target")
  endif()
  if(WIN32)
    _oxa_compiler_runtime(runtime)
    add_custom_command(TARGET ${target} POST_BUILD VERBATIM COMMAND_EXPAND_LISTS
      COMMAND ${CMAKE_COMMAND} -E copy_if_different $<TARGET_FILE:OxaBase::OxaBase> $<TARGET_RUNTIME_DLLS:${target}> ${runtime}
        $<TARGET_FILE_DIR:${target}>)
  endif()
endfunction()

function(oxa_install_module target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "RUNTIME" "DESTINATION;COMPONENT" "MANUALS")
  set(caller "oxa_install_module(${target})")
  if(arg_UNPARSED_ARGUMENTS)
    _oxa_fail("${caller}: unknown arguments: ${arg_UNPARSED_ARGUMENTS}")
  elseif(arg_KEYWORDS_MISSING_VALUES)
    _oxa_fail("${caller}: nothing behind ${arg_KEYWORDS_MISSING_VALUES}")
  elseif(NOT TARGET ${target})
    _oxa_fail("${caller}: there is no such target")
  endif()
  get_property(modules GLOBAL PROPERTY OXA_MODULES)
  if(NOT target IN_LIST modules)
    _oxa_fail("${caller}: it was not made by oxa_add_module()")
  endif()
  foreach(manual IN LISTS arg_MANUALS)
    _oxa_check_file("${caller}" "manual" ${manual})
  endforeach()

  include(GNUInstallDirs)
  get_target_property(kind ${target} TYPE)
  if(NOT arg_DESTINATION)
    set(arg_DESTINATION ${CMAKE_INSTALL_LIBDIR})
    if(WIN32 OR kind STREQUAL EXECUTABLE)
      set(arg_DESTINATION ${CMAKE_INSTALL_BINDIR})
    endif()
  endif()
  set(component "")
  if(arg_COMPONENT)
    set(component COMPONENT ${arg_COMPONENT})
  endif()

  get_target_property(languages ${target} OXA_LANGUAGES)
  _oxa_claim_languages("the installed folder ${arg_DESTINATION}" ${target} "${languages}" "give each a DESTINATION of its own")
  install(TARGETS ${target} RUNTIME DESTINATION ${arg_DESTINATION} ${component}
    LIBRARY DESTINATION ${arg_DESTINATION} ${component} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} ${component})
  foreach(language IN LISTS languages)
    install(FILES $<TARGET_FILE_DIR:${target}>/languages/${language}.dll DESTINATION ${arg_DESTINATION}/languages ${component})
  endforeach()
  if(arg_MANUALS)
    install(FILES ${arg_MANUALS} DESTINATION ${arg_DESTINATION} ${component})
  endif()
  if(arg_RUNTIME)
    _oxa_compiler_runtime(runtime)
    install(PROGRAMS $<TARGET_FILE:OxaBase::OxaBase> ${runtime} DESTINATION ${arg_DESTINATION} ${component})
    set_property(TARGET ${target} APPEND PROPERTY INSTALL_RPATH "$ORIGIN")
  endif()
endfunction()
