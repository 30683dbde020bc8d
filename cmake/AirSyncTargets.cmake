# What every target of this tree is built with: warnings as errors, hardening, and the sanitizers and the coverage
# instrumentation that were asked for.
include(AirSyncHardening)

function(airsync_target target standard)
  target_compile_features(${target} PUBLIC cxx_std_${standard})
  set_target_properties(${target} PROPERTIES CXX_STANDARD ${standard})
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND standard GREATER_EQUAL 20)
    # GCC 12 takes "literal" + std::string for an overlapping copy when it optimises (its bug 105651).
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  airsync_harden(${target})
  if(AIRSYNC_SANITIZE)
    # The library is built without run-time type information, which the vptr check would need.
    set(flags -fsanitize=${AIRSYNC_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all
              -fno-omit-frame-pointer)
    target_compile_options(${target} PRIVATE ${flags})
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND AIRSYNC_SANITIZE MATCHES thread)
      # Asio has fences where its loops run handlers, which nothing of ours does.
      target_compile_options(${target} PRIVATE -Wno-tsan)
    endif()
    target_link_options(${target} PRIVATE ${flags})
  endif()
  if(AIRSYNC_FUZZ)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# A GoogleTest program that only a script builds and runs.
function(airsync_program_of_tests target)
  cmake_parse_arguments(TEST "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${target} EXCLUDE_FROM_ALL ${TEST_SOURCES})
  airsync_test_settings(${target})
endfunction()

# What the test programs share, inside the functions that make them.
macro(airsync_test_settings target)
  airsync_target(${target} 20)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${target} PRIVATE ${TEST_LIBRARIES} GTest::gmock GTest::gtest_main)
endmacro()

# A GoogleTest program. Its tests carry the label that scripts/test selects them by; building unit_tests builds all
# programs with the label unit. Where a process takes long to start, which it does in an emulator and with sanitizers,
# the tests of a program run in a few.
#   SHARDS  how many these are; 1 when nothing is said
add_custom_target(unit_tests)
function(airsync_test target label)
  cmake_parse_arguments(TEST "" "SHARDS" "SOURCES;LIBRARIES" ${ARGN})
  add_executable(${target} ${TEST_SOURCES})
  airsync_test_settings(${target})
  if(label STREQUAL unit)
    add_dependencies(unit_tests ${target})
  endif()
  if(NOT CMAKE_CROSSCOMPILING AND NOT AIRSYNC_SANITIZE)
    gtest_discover_tests(${target} PROPERTIES LABELS ${label} TIMEOUT 120 DISCOVERY_TIMEOUT 60)
    return()
  endif()
  if(NOT TEST_SHARDS)
    set(TEST_SHARDS 1)
  endif()
  foreach(shard RANGE 1 ${TEST_SHARDS})
    math(EXPR index "${shard} - 1")
    set(name ${target})
    if(TEST_SHARDS GREATER 1)
      set(name "${target}.${shard}of${TEST_SHARDS}")
    endif()
    add_test(NAME ${name} COMMAND ${target} --gtest_brief=1)
    set_tests_properties(
      ${name} PROPERTIES LABELS ${label} TIMEOUT 900
                         ENVIRONMENT "GTEST_TOTAL_SHARDS=${TEST_SHARDS};GTEST_SHARD_INDEX=${index}")
  endforeach()
endfunction()
