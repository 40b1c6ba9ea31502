# What every target of the project shares: language level, warnings, sanitizers, arithmetic.
add_library(parlowen_options INTERFACE)
target_compile_options(parlowen_options INTERFACE
  -Wall -Wextra -Wconversion -Wshadow
  # No fused multiply-add: every machine prints the same digits.
  -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in every "literal" + std::string (its bug 105651).
  target_compile_options(parlowen_options INTERFACE -Wno-restrict)
endif()
if(PARLOWEN_WERROR)
  target_compile_options(parlowen_options INTERFACE -Werror)
endif()
if(PARLOWEN_SANITIZE)
  target_compile_options(parlowen_options INTERFACE
    -fsanitize=${PARLOWEN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(parlowen_options INTERFACE -fsanitize=${PARLOWEN_SANITIZE})
endif()

# parlowen_room(NAME SOURCES ... LINKS ...): one room of the house, a library parlowen_NAME (static, unless
# BUILD_SHARED_LIBS is on) that links the rooms named and no others.
function(parlowen_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LINKS" ${ARGN})
  add_library(parlowen_${name} ${ROOM_SOURCES})
  target_include_directories(parlowen_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(parlowen_${name} PUBLIC parlowen_options)
  foreach(link IN LISTS ROOM_LINKS)
    target_link_libraries(parlowen_${name} PUBLIC parlowen_${link})
  endforeach()
endfunction()

# parlowen_test_program(NAME HEADERS ...): how a program of tests is compiled: in less time than the rooms, which are what
# takes time to run. Under the sanitizers those headers are compiled once; what a file forgot to include is found by the
# other builds.
function(parlowen_test_program name)
  cmake_parse_arguments(TEST "" "" "HEADERS" ${ARGN})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE
    PARLOWEN_SOURCE_DIR="${PROJECT_SOURCE_DIR}" PARLOWEN_BINARY_DIR="${PROJECT_BINARY_DIR}")
  if(PARLOWEN_SANITIZE)
    target_compile_options(${name} PRIVATE -O0)
    target_precompile_headers(${name} PRIVATE ${TEST_HEADERS})
  elseif(CMAKE_BUILD_TYPE STREQUAL "Release")
    target_compile_options(${name} PRIVATE -O1)
  endif()
endfunction()

# parlowen_test(NAME SOURCES ... LINKS ...): one GoogleTest program a test folder.
function(parlowen_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LINKS" ${ARGN})
  add_executable(${name}_test ${TEST_SOURCES})
  parlowen_test_program(${name}_test HEADERS <gtest/gtest.h> <filesystem> <functional>)
  target_link_libraries(${name}_test PRIVATE parlowen_options GTest::gtest GTest::gtest_main)
  foreach(link IN LISTS TEST_LINKS)
    target_link_libraries(${name}_test PRIVATE parlowen_${link})
  endforeach()
  gtest_discover_tests(${name}_test TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 240)
endfunction()
