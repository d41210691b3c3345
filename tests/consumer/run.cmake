# Installs the build in BUILD, then configures, builds and tests the consumer against it with the same tools.
# Arguments: BUILD, CONFIG, and OPTIONS, the settings that the consumer's configuration shares with ours.
set(prefix ${BUILD}/consumer/prefix)
set(folder ${BUILD}/consumer/build)
file(REMOVE_RECURSE ${BUILD}/consumer)
set(run COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix} OUTPUT_QUIET ${run})
execute_process(COMMAND ${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${folder} -G Ninja ${OPTIONS}
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=${CONFIG} ${run})
execute_process(COMMAND ${CMAKE_COMMAND} --build ${folder} ${run})
execute_process(COMMAND ${CMAKE_CTEST_COMMAND} --test-dir ${folder} --output-on-failure ${run})
