# Whole programs whose behaviour is tested from outside.

function(oxa_add_diagnostics_program name)
  add_executable(diagnostics_${name} diagnostics/programs/${name}.cpp)
  target_link_libraries(diagnostics_${name} PRIVATE OxaBase oxa_warnings)
endfunction()

oxa_add_diagnostics_program(ask)
oxa_add_diagnostics_program(bare)
# Without symbols of any kind.
target_compile_options(diagnostics_bare PRIVATE -g0)
target_link_options(diagnostics_bare PRIVATE -s)
add_test(NAME diagnostics_bare COMMAND diagnostics_bare)

add_library(diagnostics_plugin MODULE diagnostics/programs/plugin.cpp)
target_compile_options(diagnostics_plugin PRIVATE -O1 -g -fno-optimize-sibling-calls)
set_target_properties(diagnostics_plugin PROPERTIES PREFIX "" OUTPUT_NAME diagnostics SUFFIX .plugin CXX_VISIBILITY_PRESET default
  LIBRARY_OUTPUT_DIRECTORY $<TARGET_FILE_DIR:diagnostics_test>)
add_dependencies(diagnostics_test diagnostics_plugin)

if(WIN32)
  oxa_add_diagnostics_program(wait)
  target_compile_options(diagnostics_wait PRIVATE -gdwarf-4)
  oxa_add_diagnostics_program(no_reader)
  add_test(NAME diagnostics_no_reader COMMAND diagnostics_no_reader)
  set_tests_properties(diagnostics_no_reader PROPERTIES ENVIRONMENT "WINEDLLOVERRIDES=mscoree,mshtml,dbghelp=")
  add_dependencies(diagnostics_test diagnostics_wait)
endif()
add_dependencies(diagnostics_test diagnostics_ask)

foreach(test diagnostics_bare diagnostics_no_reader)
  if(TEST ${test})
    set_tests_properties(${test} PROPERTIES TIMEOUT 600)
  endif()
endforeach()
