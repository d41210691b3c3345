# What an installed copy holds: the library, its public headers and a CMake package. Headers in detail/ folders and
# of the seam serve the library alone.

include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/OxaBase)

install(TARGETS OxaBase EXPORT OxaBaseTargets)
install(DIRECTORY base DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/OxaBase-${PROJECT_VERSION}
  FILES_MATCHING PATTERN *.h PATTERN detail EXCLUDE PATTERN platform EXCLUDE)
install(FILES base/platform/platform_types.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/OxaBase-${PROJECT_VERSION}/base/platform)
install(EXPORT OxaBaseTargets NAMESPACE OxaBase:: DESTINATION ${package_folder})

file(WRITE ${PROJECT_BINARY_DIR}/OxaBaseConfig.cmake "\
include(\${CMAKE_CURRENT_LIST_DIR}/OxaBaseTargets.cmake)
include(\${CMAKE_CURRENT_LIST_DIR}/OxaModule.cmake)
")
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OxaBaseConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OxaBaseConfig.cmake ${PROJECT_BINARY_DIR}/OxaBaseConfigVersion.cmake
  DESTINATION ${package_folder})

# For authors of modules: the function that makes them, and the sources that every module gets.
install(FILES cmake/OxaModule.cmake DESTINATION ${package_folder})
install(FILES base/module/entry/attach.cpp DESTINATION ${package_folder}/base/module/entry)
foreach(system linux windows)
  install(DIRECTORY base/platform/${system}/entry DESTINATION ${package_folder}/base/platform/${system})
endforeach()
