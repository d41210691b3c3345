# What an installed copy holds: the library, its public headers and a CMake package. Headers in detail/ folders and
# of the seam serve the library alone.

include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/OxaBase)

install(TARGETS OxaBase EXPORT OxaBaseTargets)
install(DIRECTORY base DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/OxaBase-${PROJECT_VERSION}
  FILES_MATCHING PATTERN *.h PATTERN detail EXCLUDE PATTERN platform EXCLUDE)
install(EXPORT OxaBaseTargets NAMESPACE OxaBase:: DESTINATION ${package_folder})

file(WRITE ${PROJECT_BINARY_DIR}/OxaBaseConfig.cmake "include(\${CMAKE_CURRENT_LIST_DIR}/OxaBaseTargets.cmake)\n")
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OxaBaseConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OxaBaseConfig.cmake ${PROJECT_BINARY_DIR}/OxaBaseConfigVersion.cmake
  DESTINATION ${package_folder})
