# GoogleTest for the tests: the system's, or, for another machine than this one, built from the system's sources of it.
include(GoogleTest)
if(CMAKE_CROSSCOMPILING)
  add_subdirectory(/usr/src/googletest googletest EXCLUDE_FROM_ALL)
else()
  find_package(GTest REQUIRED)
endif()
