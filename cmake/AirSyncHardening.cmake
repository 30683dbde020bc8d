# What stands between a mistake of ours and whoever found it: tests/package/hardening_test.sh reads it off the binaries.
#
# Position-independent programs, full RELRO with all symbols bound at the start, no executable stack, stack protectors;
# control-flow protection where the processor has it, which is x86; and the checked functions of the C library, where
# the compiler optimises, which they need, and where no sanitizer does better.
#
# For another machine than this one there are no checked functions, which a handset's C library need not have, and stack
# protectors only where texts are on the stack: they take 2.6 kB of the 100 KiB that the library may have, and all that
# -strong adds take 7.3 kB. AIRSYNC_HARDEN=OFF is for a C library without __stack_chk_fail.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

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
  if(NOT AIRSYNC_HARDEN)
    return()
  endif()
  get_target_property(type ${target} TYPE)
  if(type STREQUAL EXECUTABLE)
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
  elseif(NOT type STREQUAL SHARED_LIBRARY)
    target_compile_options(${target} PRIVATE -fPIE)
  endif()
  if(CMAKE_CROSSCOMPILING)
    target_compile_options(${target} PRIVATE -fstack-protector)
    return()
  endif()
  target_compile_options(${target} PRIVATE -fstack-protector-strong)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|AMD64|i[3-6]86)$")
    target_compile_options(${target} PRIVATE -fcf-protection=full)
  endif()
  if(NOT AIRSYNC_SANITIZE)
    target_compile_options(
      ${target} PRIVATE $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3>)
  endif()
endfunction()
