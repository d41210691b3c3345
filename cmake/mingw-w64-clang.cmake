# Windows, x86-64, by clang with the headers and libraries of MinGW-w64: the nearest thing here to the compiler of
# another maker.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)

# Clang looks for them in other folders than Debian's.
execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-file-name=libgcc.a OUTPUT_VARIABLE folder OUTPUT_STRIP_TRAILING_WHITESPACE)
cmake_path(GET folder PARENT_PATH folder)
set(CMAKE_CXX_FLAGS_INIT
  "-pthread -stdlib++-isystem ${folder}/include/c++ -stdlib++-isystem ${folder}/include/c++/x86_64-w64-mingw32")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT -L${folder})
endforeach()
