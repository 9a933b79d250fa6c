# Compile settings: C++17, hardened in release builds. As part of another project, that project decides
# about the build type, tests and compiler warnings.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES AND PROJECT_IS_TOP_LEVEL)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

option(FABSCAN_TESTS "Build the tests" OFF)
option(FABSCAN_WERROR "Treat warnings as errors" ${PROJECT_IS_TOP_LEVEL})
set(FABSCAN_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")

# Project includes name the directory: "cli/files/staged_output.h".
add_library(fabscan_settings INTERFACE)
target_include_directories(fabscan_settings INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(fabscan_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion $<$<BOOL:${FABSCAN_WERROR}>:-Werror>
  -fstack-protector-strong)
if(FABSCAN_SANITIZE)
  target_compile_options(fabscan_settings INTERFACE
    -fsanitize=${FABSCAN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(fabscan_settings INTERFACE -fsanitize=${FABSCAN_SANITIZE})
elseif(CMAKE_BUILD_TYPE MATCHES Rel)
  target_compile_options(fabscan_settings INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()
target_link_options(fabscan_settings INTERFACE LINKER:-z,relro,-z,now)
set(CMAKE_EXE_LINKER_FLAGS "${CMAKE_EXE_LINKER_FLAGS} -pie")

if(FABSCAN_TESTS)
  find_package(GTest REQUIRED)
  include(GoogleTest)
endif()

# fabscan_test(NAME file... LIBRARIES library...): one test program, one ctest entry.
function(fabscan_test name)
  if(NOT FABSCAN_TESTS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "LIBRARIES;DEFINITIONS" ${ARGN})
  add_executable(${name} ${ARG_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} fabscan_settings GTest::gmock_main)
  target_compile_definitions(${name} PRIVATE ${ARG_DEFINITIONS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()
