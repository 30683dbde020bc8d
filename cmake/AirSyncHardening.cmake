# Where programs look for libraries, and what the linker does so that nobody bends a program to his own ends: full RELRO,
# all symbols bound at the start, no executable stack.

# Programs look for libraries in one directory, named absolutely or by where the program lies. CMake's own way of having
# one for the build tree and another for the installed one pads it with ':', and an empty element is the current
# directory: whoever can put a file there runs code. So both trees have the same one, and programs that are installed
# lie the same way to the library in both.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
file(RELATIVE_PATH airsync_library_from_programs "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
set(AIRSYNC_INSTALLED_RPATH "$ORIGIN/${airsync_library_from_programs}")
cmake_path(ABSOLUTE_PATH airsync_library_from_programs BASE_DIRECTORY "${PROJECT_BINARY_DIR}/host/cli" NORMALIZE
           OUTPUT_VARIABLE AIRSYNC_LIBRARY_DIRECTORY)
set(CMAKE_INSTALL_RPATH "${AIRSYNC_LIBRARY_DIRECTORY}")

function(airsync_harden target)
  target_link_options(${target} PRIVATE LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
endfunction()
