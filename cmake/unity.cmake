# Units of several sources, which read the headers that these share once instead of once for each.

option(OXA_UNITY "Compile the sources of each folder of the library as one" OFF)

# The names that a file declares at the start of a line: of types alone, and of functions and constants, too.
function(_oxa_declared_names file types_result all_result)
  file(READ ${file} text)
  string(REPLACE ";" "" text "${text}")
  string(REGEX MATCHALL "\n(class|struct|union|enum class|enum) [A-Za-z0-9_]+" types "${text}")
  string(REGEX REPLACE "\n[a-z ]+ " "" types "${types}")
  string(REGEX MATCHALL "\n[A-Za-z_][^\n(={[]*[ *&][A-Za-z0-9_]+ ?[(={[]" others "${text}")
  set(names ${types})
  foreach(declaration IN LISTS others)
    string(REGEX REPLACE "^.*[ *&]([A-Za-z0-9_]+) ?[(={[]$" "\\1" name "${declaration}")
    list(APPEND names ${name})
  endforeach()
  set(${types_result} ${types} PARENT_SCOPE)
  set(${all_result} ${names} PARENT_SCOPE)
endfunction()

# Sets a variable to whether two lists have something in common.
function(_oxa_share result first second)
  set(rest ${${first}})
  list(REMOVE_ITEM rest "" ${${second}})
  list(LENGTH rest left)
  list(LENGTH ${first} before)
  if(left LESS before)
    set(${result} ON PARENT_SCOPE)
  else()
    set(${result} OFF PARENT_SCOPE)
  endif()
endfunction()

# Puts a source of a target into the unit of a group, unless it has names that another source there, or a header beside
# it, has, too: then it is compiled by itself.
function(oxa_add_to_unit target group source)
  get_property(known GLOBAL PROPERTY oxa_names_of_${group})
  cmake_path(GET source PARENT_PATH folder)
  file(GLOB headers ${folder}/*.h)
  set(types_of_headers "")
  foreach(header IN LISTS headers)
    _oxa_declared_names(${header} types all)
    list(APPEND types_of_headers ${types})
  endforeach()
  _oxa_declared_names(${source} types names)
  _oxa_share(clashes_with_source names known)
  _oxa_share(clashes_with_header types types_of_headers)
  if(NOT clashes_with_source AND NOT clashes_with_header)
    set_property(GLOBAL APPEND PROPERTY oxa_names_of_${group} ${names})
    set_source_files_properties(${source} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP ${group})
  endif()
endfunction()

# What a function calls a thing may be the name of another source's helper; and where GCC inlines across sources, it takes
# the value that an empty std::optional does not have for one that is read.
add_library(oxa_unit_warnings INTERFACE)
target_compile_options(oxa_unit_warnings INTERFACE -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)

function(oxa_compile_units target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  target_link_libraries(${target} PRIVATE oxa_unit_warnings)
endfunction()

# All sources of a target as one unit, when units are asked for.
function(oxa_compile_as_unit target)
  if(NOT OXA_UNITY)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    if(source MATCHES "\\.cpp$")
      oxa_add_to_unit(${target} ${target} ${source})
    endif()
  endforeach()
  oxa_compile_units(${target})
endfunction()
