# Compile settings: C++17. Errors for warnings, hardening and tests are options, which CMakePresets.json
# sets for our own builds; none of them is exported.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES AND PROJECT_IS_TOP_LEVEL)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

option(FABSCAN_TESTS "Build the tests" OFF)
option(FABSCAN_ONLY_GENERATOR "Leave out all that needs more than the standard library" OFF)
option(FABSCAN_WERROR "Treat warnings as errors" OFF)
option(FABSCAN_HARDENING "Build with the hardening options of the compiler and the linker" OFF)
set(FABSCAN_SANITIZE "" CACHE STRING "Sanitizers to build with, such as address,undefined")

# Project includes name the directory: "cli/files/staged_output.h".
add_library(fabscan_settings INTERFACE)
target_include_directories(fabscan_settings INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(fabscan_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion $<$<BOOL:${FABSCAN_WERROR}>:-Werror>)
if(FABSCAN_SANITIZE)
  target_compile_options(fabscan_settings INTERFACE
    -fsanitize=${FABSCAN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(fabscan_settings INTERFACE -fsanitize=${FABSCAN_SANITIZE})
endif()
if(FABSCAN_HARDENING)
  target_compile_options(fabscan_settings INTERFACE
    -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  target_link_options(fabscan_settings INTERFACE LINKER:-z,relro,-z,now)
endif()
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

if(FABSCAN_TESTS AND CMAKE_CROSSCOMPILING)
  # Installed libraries are those of this machine.
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
elseif(FABSCAN_TESTS)
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
