# Makes the packages of the build in BUILD, checks that they hold what an installation does, and builds and tests
# projects against them where a user may put them. Further arguments: SOURCES, VERSION, INTERFACE (the version in names),
# COMPILER, WINDOWS, OBJDUMP, EMULATOR, OPTIONS, the settings that the configuration of consumers shares with ours, and
# LIBRARY_OPTIONS, further ones that objects of the library depend on.
cmake_minimum_required(VERSION 3.25)
set(work ${BUILD}/package)
file(REMOVE_RECURSE ${work})
set(run COMMAND_ERROR_IS_FATAL ANY)
# What is tested is whether they build, not how well the compiler does.
set(cheap -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0)

# The files below a folder.
function(list_files folder result)
  file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE ${folder} ${folder}/*)
  list(SORT files)
  set(${result} ${files} PARENT_SCOPE)
endfunction()

function(compare_files package expected found)
  set(missing ${expected})
  list(REMOVE_ITEM missing ${found})
  set(surplus ${found})
  list(REMOVE_ITEM surplus ${expected})
  if(missing OR surplus)
    message(FATAL_ERROR "${package} does not hold what it should. Missing: ${missing} Surplus: ${surplus}")
  endif()
endfunction()

# Whether a program or library has beside it what it imports of ours and of the compiler.
function(check_imports file)
  execute_process(COMMAND ${OBJDUMP} -p ${file} OUTPUT_VARIABLE imports ${run})
  string(REGEX MATCHALL "DLL Name: (lib|Oxa)[^\n]*" imports "${imports}")
  cmake_path(GET file PARENT_PATH folder)
  foreach(import IN LISTS imports)
    string(REPLACE "DLL Name: " "" import ${import})
    if(NOT EXISTS ${folder}/${import})
      message(FATAL_ERROR "${file} needs ${import}, which is not beside it")
    endif()
  endforeach()
endfunction()

# Configures, builds and tests a project; CMake's own arguments follow.
function(build_project source build)
  execute_process(COMMAND ${CMAKE_COMMAND} -S ${source} -B ${build} -G Ninja ${OPTIONS} ${ARGN} OUTPUT_QUIET ${run})
  execute_process(COMMAND ${CMAKE_COMMAND} --build ${build} ${run})
  execute_process(COMMAND ${CMAKE_CTEST_COMMAND} --test-dir ${build} --output-on-failure OUTPUT_QUIET ${run})
endfunction()

execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${work}/prefix OUTPUT_QUIET ${run})
execute_process(COMMAND ${CMAKE_CPACK_COMMAND} --config ${BUILD}/CPackConfig.cmake -B ${work} OUTPUT_QUIET ${run})
list_files(${work}/prefix installed)

# The archive, unpacked in a folder that nobody foresaw.
file(GLOB archive ${work}/OxaBase-${VERSION}-*.tar.gz ${work}/OxaBase-${VERSION}-*.zip)
file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${work}/unpacked)
file(GLOB unpacked ${work}/unpacked/*)
set(moved "${work}/another place")
file(RENAME ${unpacked} ${moved})
list_files(${moved} found)
compare_files(${archive} "${installed}" "${found}")

# An independent project and the example where it lies, with the CMake package. It has no components.
build_project(${CMAKE_CURRENT_LIST_DIR}/../consumer ${work}/consumer ${cheap} -DCMAKE_PREFIX_PATH=${moved})
build_project(${moved}/share/doc/OxaBase-${INTERFACE}/examples/foldertool ${work}/example ${cheap}
  -DCMAKE_PREFIX_PATH=${moved})
file(WRITE ${work}/components/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)\nproject(Components LANGUAGES NONE)\n"
  "find_package(OxaBase 1.1 OPTIONAL_COMPONENTS network REQUIRED COMPONENTS gui)\n")
execute_process(COMMAND ${CMAKE_COMMAND} -S ${work}/components -B ${work}/components/build
  -DOxaBase_DIR=${moved}/lib/cmake/OxaBase-${INTERFACE} OUTPUT_QUIET ERROR_VARIABLE said RESULT_VARIABLE failed)
if(NOT failed OR NOT said MATCHES "OxaBase has no components; asked for: [^\n]*gui")
  message(FATAL_ERROR "An unknown component does not stop find_package(): ${said}")
endif()

# The same project with the sources in its own build. It installs its own files and nothing of ours, and builds no more
# than it links. Its own wish to compile many sources at a time is none of ours. The objects of the library are those of
# our own build, so a compiler cache has them, wherever they are built.
set(ENV{CCACHE_NOHASHDIR} 1)
build_project(${CMAKE_CURRENT_LIST_DIR}/../consumer ${work}/fetched ${LIBRARY_OPTIONS} -DOXABASE_SOURCES=${SOURCES}
  -DCMAKE_UNITY_BUILD=ON)
file(GLOB_RECURSE surplus ${work}/fetched/*oxa_memory_file_system.a)
if(surplus)
  message(FATAL_ERROR "Built though nothing links it: ${surplus}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} --install ${work}/fetched --prefix ${work}/fetched/installed OUTPUT_QUIET ${run})
list_files(${work}/fetched/installed found)
set(suite suite/greeter.pdf suite/languages/DEU.dll)
if(WINDOWS)
  list(APPEND suite lib/libgreeter.dll.a suite/OxaBase.dll suite/greet.exe suite/greeter.dll suite/libgcc_s_seh-1.dll
    suite/libstdc++-6.dll suite/libwinpthread-1.dll)
else()
  list(APPEND suite suite/greet suite/greeter.so suite/libOxaBase-${INTERFACE}.so)
endif()
compare_files("What oxa_install_module() installs" "${suite}" "${found}")
file(RENAME ${work}/fetched/installed/suite ${work}/suite)
file(GLOB greet ${work}/suite/greet ${work}/suite/greet.exe)
execute_process(COMMAND ${EMULATOR} ${greet} -lang=DEU OUTPUT_VARIABLE output ${run})
if(NOT output MATCHES "^Hallo from greeter, IDS_HELLO is 1\r?\n$")
  message(FATAL_ERROR "The installed program prints ${output}")
endif()

if(WINDOWS)
  # The compiler's run-time libraries are there, too.
  check_imports(${moved}/bin/OxaBase.dll)
  check_imports(${work}/consumer/bin/consumer.exe)
  check_imports(${work}/example/foldertool/foldertool.exe)
  return()
endif()

# The Debian package, and a program by pkg-config.
find_program(dpkg_deb dpkg-deb)
find_program(pkg_config NAMES pkgconf pkg-config)
set(system_root ${moved})
if(dpkg_deb)
  set(package ${work}/oxabase-${INTERFACE}_${VERSION}_amd64.deb)
  execute_process(COMMAND ${dpkg_deb} -x ${package} ${work}/root ${run})
  list_files(${work}/root/usr found)
  compare_files(${package} "${installed};share/gdb/auto-load/usr/lib/libOxaBase-${INTERFACE}.so-gdb.py" "${found}")
  execute_process(COMMAND ${dpkg_deb} -f ${package} OUTPUT_VARIABLE control ${run})
  foreach(field "Package: oxabase-${INTERFACE}\n" "Version: ${VERSION}\n" "Depends: [^\n]*libc6 [^\n]*libstdc[+][+]6 "
      "Maintainer: [^\n]+@" "Description: ")
    if(NOT control MATCHES ${field})
      message(FATAL_ERROR "The fields of ${package} lack \"${field}\":\n${control}")
    endif()
  endforeach()
  set(system_root ${work}/root/usr)
endif()
if(pkg_config)
  set(ENV{PKG_CONFIG_PATH} ${system_root}/lib/pkgconfig)
  execute_process(COMMAND ${pkg_config} --cflags --libs "OxaBase-${INTERFACE} = ${VERSION}" OUTPUT_VARIABLE flags
    OUTPUT_STRIP_TRAILING_WHITESPACE ${run})
  separate_arguments(flags UNIX_COMMAND ${flags})
  execute_process(COMMAND ${COMPILER} -std=c++20 ${CMAKE_CURRENT_LIST_DIR}/../consumer/consumer.cpp ${flags}
    -Wl,-rpath,${system_root}/lib -o ${work}/program ${run})
  execute_process(COMMAND ${work}/program OUTPUT_VARIABLE output ${run})
  if(NOT output STREQUAL "scan010: 12.5 true\n")
    message(FATAL_ERROR "The program built with pkg-config prints ${output}")
  endif()
endif()
