# The package as find_package() finds it. It has no components, so that nobody who asks for one gets it.
foreach(component IN LISTS OxaBase_FIND_COMPONENTS)
  set(OxaBase_${component}_FOUND FALSE)
  if(OxaBase_FIND_REQUIRED_${component})
    set(OxaBase_FOUND FALSE)
    set(OxaBase_NOT_FOUND_MESSAGE "OxaBase has no components; asked for: ${OxaBase_FIND_COMPONENTS}")
    return()
  endif()
endforeach()

include(${CMAKE_CURRENT_LIST_DIR}/OxaBaseTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/OxaModule.cmake)
