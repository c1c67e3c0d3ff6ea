# Every folder below src/ is one static library. A folder's CMakeLists.txt states what it may use; nothing else
# is on its include path, so a wrong include fails to compile and a wrong call fails to link.

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
find_program(MOLD mold)
if(MOLD)
  add_link_options(-fuse-ld=mold)
endif()

add_library(kivera_flags INTERFACE)
# GCC 12 sees overlaps and overflows in std::string's own operator+ that are not there.
target_compile_options(kivera_flags INTERFACE -Wno-restrict -Wno-stringop-overflow -Wno-array-bounds)
target_compile_options(kivera_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -ffp-contract=off)
if(KIVERA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# One precompiled header for the standard library, built once and shared by every library of ours.
add_library(kivera_pch OBJECT ${CMAKE_CURRENT_LIST_DIR}/Standard.cpp)
target_precompile_headers(kivera_pch PRIVATE ${CMAKE_CURRENT_LIST_DIR}/Standard.h)
target_link_libraries(kivera_pch PRIVATE kivera_flags)

# kivera_folder(NAME USES lib...): the library of the current folder, with all its sources.
function(kivera_folder name)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(kivera_${name} STATIC ${sources})
  set_target_properties(kivera_${name} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(kivera_${name} INTERFACE ${CMAKE_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/include/${name})
  # "core/Text.h" is found only by those who link kivera_core.
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_BINARY_DIR}/include/${name}/${name} SYMBOLIC)
  target_include_directories(kivera_${name} PRIVATE ${CMAKE_BINARY_DIR}/include/${name})
  target_precompile_headers(kivera_${name} REUSE_FROM kivera_pch)
  target_link_libraries(kivera_${name} PUBLIC ${ARG_USES} PRIVATE kivera_flags)
endfunction()

# The tests share a precompiled header with the test framework in it, and are not optimised: what they call is.
if(KIVERA_TESTS)
  find_package(GTest REQUIRED)
  add_library(kivera_test_pch OBJECT ${CMAKE_CURRENT_LIST_DIR}/Standard.cpp)
  target_precompile_headers(kivera_test_pch PRIVATE ${CMAKE_CURRENT_LIST_DIR}/Standard.h <gtest/gtest.h>)
  target_compile_options(kivera_test_pch PRIVATE -O0)
  target_link_libraries(kivera_test_pch PRIVATE GTest::gtest kivera_flags)
endif()

# kivera_tests(NAME USES lib...): one test program from the sources of the current folder.
function(kivera_tests name)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name}_tests ${sources})
  target_precompile_headers(${name}_tests REUSE_FROM kivera_test_pch)
  target_compile_options(${name}_tests PRIVATE -O0)
  target_link_libraries(${name}_tests PRIVATE ${ARG_USES} GTest::gtest GTest::gtest_main kivera_flags)
  target_include_directories(${name}_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name}_tests PRIVATE KIVERA_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
endfunction()
