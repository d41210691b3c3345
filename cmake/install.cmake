# What an installed copy holds: the library, its public headers, a CMake package, a pkg-config file, views for debuggers
# and the documentation. Headers in detail/ folders and of the seam serve the library alone. What carries no version in
# its own name lies in folders that do, so that two versions can live side by side.

include(CMakePackageConfigHelpers)

set(versioned_name OxaBase-${OXA_INTERFACE_VERSION})
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/${versioned_name})
set(headers_folder ${CMAKE_INSTALL_INCLUDEDIR}/${versioned_name})
set(data_folder ${CMAKE_INSTALL_DATADIR}/${versioned_name})
set(doc_folder ${CMAKE_INSTALL_DATADIR}/doc/${versioned_name})

install(TARGETS OxaBase EXPORT OxaBaseTargets)
install(DIRECTORY base DESTINATION ${headers_folder}
  FILES_MATCHING PATTERN *.h PATTERN detail EXCLUDE PATTERN text EXCLUDE PATTERN formats EXCLUDE PATTERN platform EXCLUDE
    PATTERN entry EXCLUDE)
install(FILES base/platform/platform_types.h DESTINATION ${headers_folder}/base/platform)
install(EXPORT OxaBaseTargets NAMESPACE OxaBase:: DESTINATION ${package_folder})

write_basic_package_version_file(${PROJECT_BINARY_DIR}/OxaBaseConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/OxaBaseConfig.cmake ${PROJECT_BINARY_DIR}/OxaBaseConfigVersion.cmake
  DESTINATION ${package_folder})

# For authors of modules: the functions that make them, and the sources that every module gets.
install(FILES cmake/OxaModule.cmake DESTINATION ${package_folder})
install(FILES base/module/entry/attach.cpp DESTINATION ${package_folder}/base/module/entry)
foreach(system linux windows)
  install(DIRECTORY base/platform/${system}/modules/entry DESTINATION ${package_folder}/base/platform/${system}/modules)
endforeach()

# The paths begin where the file lies, so that the tree may be moved.
set(prefix_from_pkgconfig /)
cmake_path(RELATIVE_PATH prefix_from_pkgconfig BASE_DIRECTORY /${CMAKE_INSTALL_LIBDIR}/pkgconfig)
get_target_property(library_name OxaBase OUTPUT_NAME)
if(NOT library_name)
  set(library_name OxaBase)
endif()
configure_file(cmake/OxaBase.pc.in ${versioned_name}.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/${versioned_name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(DIRECTORY extras/debugger DESTINATION ${data_folder} FILES_MATCHING PATTERN *.py PATTERN *.natvis)
if(NOT WIN32)
  # Where gdb looks for views of a library of the system, and trusts them.
  install(CODE "
    if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
      set(views \"/usr/share/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR}/$<TARGET_FILE_NAME:OxaBase>-gdb.py\")
      file(WRITE \"\$ENV{DESTDIR}\${views}\" \"import gdb\\n\\ngdb.execute('source /usr/${data_folder}/debugger/oxabase_gdb.py')\\n\")
      list(APPEND CMAKE_INSTALL_MANIFEST_FILES \${views})
    endif()")
endif()

install(FILES README.md CHANGELOG.md DESTINATION ${doc_folder})
install(DIRECTORY docs DESTINATION ${doc_folder} FILES_MATCHING PATTERN *.md PATTERN *.svg PATTERN *.png)
if(EXISTS ${PROJECT_SOURCE_DIR}/examples)
  install(DIRECTORY examples DESTINATION ${doc_folder})
endif()

# Programs do not start without the run-time libraries of the compiler, which no Windows has.
if(OXA_INSTALL_COMPILER_RUNTIME)
  _oxa_compiler_runtime(runtime)
  foreach(file IN LISTS runtime)
    cmake_path(GET file FILENAME name)
    install(PROGRAMS ${file} DESTINATION ${CMAKE_INSTALL_BINDIR})
    install(CODE "
      if(CMAKE_INSTALL_DO_STRIP)
        execute_process(COMMAND ${CMAKE_STRIP} \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/${name})
      endif()")
  endforeach()
endif()
