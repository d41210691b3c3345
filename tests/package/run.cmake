# Makes the packages of the build in BUILD, checks that they hold what an installation does, and builds and tests
# projects against them where a user may put them. Further arguments: VERSION, COMPILER, WINDOWS, OBJDUMP, and OPTIONS,
# the settings that the consumer's configuration shares with ours.
cmake_minimum_required(VERSION 3.25)
set(work ${BUILD}/package)
file(REMOVE_RECURSE ${work})
set(run COMMAND_ERROR_IS_FATAL ANY)

# The files below a folder, of which what matches the pattern is left out.
function(list_files folder without result)
  file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE ${folder} ${folder}/*)
  list(FILTER files EXCLUDE REGEX ${without})
  list(SORT files)
  set(${result} ${files} PARENT_SCOPE)
endfunction()

function(compare_files package folder without)
  list_files(${work}/prefix ${without} expected)
  list_files(${folder} ${without} found)
  set(missing ${expected})
  list(REMOVE_ITEM missing ${found})
  set(surplus ${found})
  list(REMOVE_ITEM surplus ${expected})
  if(missing OR surplus)
    message(FATAL_ERROR "${package} is no installed copy. Missing: ${missing} Surplus: ${surplus}")
  endif()
endfunction()

execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${work}/prefix OUTPUT_QUIET ${run})
execute_process(COMMAND ${CMAKE_CPACK_COMMAND} --config ${BUILD}/CPackConfig.cmake -B ${work} OUTPUT_QUIET ${run})

# The archive, unpacked in a folder that nobody foresaw.
file(GLOB archive ${work}/OxaBase-${VERSION}-*.tar.gz ${work}/OxaBase-${VERSION}-*.zip)
file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${work}/unpacked)
file(GLOB unpacked ${work}/unpacked/*)
set(moved "${work}/another place")
file(RENAME ${unpacked} ${moved})
compare_files(${archive} ${moved} "^$")

# An independent project, with the CMake package.
execute_process(COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR}/../consumer -B ${work}/consumer -G Ninja ${OPTIONS}
  -DCMAKE_PREFIX_PATH=${moved} ${run})
execute_process(COMMAND ${CMAKE_COMMAND} --build ${work}/consumer ${run})
execute_process(COMMAND ${CMAKE_CTEST_COMMAND} --test-dir ${work}/consumer --output-on-failure ${run})

if(WINDOWS)
  # The compiler's run-time libraries are there, too.
  execute_process(COMMAND ${OBJDUMP} -p ${moved}/bin/OxaBase.dll OUTPUT_VARIABLE imports ${run})
  string(REGEX MATCHALL "DLL Name: lib[^\n]*" imports "${imports}")
  foreach(import IN LISTS imports)
    string(REPLACE "DLL Name: " "" import ${import})
    if(NOT EXISTS ${moved}/bin/${import})
      message(FATAL_ERROR "OxaBase.dll needs ${import}, which is not in the package")
    endif()
  endforeach()
  return()
endif()

# The Debian package, and a program by pkg-config.
find_program(dpkg_deb dpkg-deb)
find_program(pkg_config NAMES pkgconf pkg-config)
set(system_root ${moved})
if(dpkg_deb)
  file(GLOB package ${work}/*.deb)
  execute_process(COMMAND ${dpkg_deb} -x ${package} ${work}/root ${run})
  compare_files(${package} ${work}/root/usr "gdb/auto-load")
  execute_process(COMMAND ${dpkg_deb} -f ${package} OUTPUT_VARIABLE control ${run})
  foreach(field "Package: oxabase-${VERSION}" "Version: ${VERSION}" "Depends: [^\n]*libc6 [^\n]*libstdc[+][+]6 "
      "Maintainer: [^\n]+@" "Description: ")
    if(NOT control MATCHES ${field})
      message(FATAL_ERROR "The fields of ${package} lack \"${field}\":\n${control}")
    endif()
  endforeach()
  if(NOT EXISTS ${work}/root/usr/share/gdb/auto-load/usr/lib/libOxaBase-${VERSION}.so-gdb.py)
    message(FATAL_ERROR "${package} holds no views that gdb finds by itself")
  endif()
  set(system_root ${work}/root/usr)
endif()
if(pkg_config)
  set(ENV{PKG_CONFIG_PATH} ${system_root}/lib/pkgconfig)
  execute_process(COMMAND ${pkg_config} --cflags --libs "OxaBase-${VERSION} >= 1.1" OUTPUT_VARIABLE flags
    OUTPUT_STRIP_TRAILING_WHITESPACE ${run})
  separate_arguments(flags UNIX_COMMAND ${flags})
  execute_process(COMMAND ${COMPILER} -std=c++20 ${CMAKE_CURRENT_LIST_DIR}/../consumer/consumer.cpp ${flags}
    -Wl,-rpath,${system_root}/lib -o ${work}/program ${run})
  execute_process(COMMAND ${work}/program OUTPUT_VARIABLE output ${run})
  if(NOT output STREQUAL "scan010: 12.5 true\n")
    message(FATAL_ERROR "The program built with pkg-config prints ${output}")
  endif()
endif()
