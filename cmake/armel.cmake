# 32-bit ARM without floating-point hardware: Debian's cross compiler, and qemu's user emulation for the tests.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv5te)

set(CMAKE_CXX_COMPILER arm-linux-gnueabi-g++)
set(CMAKE_CXX_FLAGS_INIT "-march=armv5te -mtune=xscale -mfloat-abi=soft")
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm -cpu pxa255 -L /usr/arm-linux-gnueabi)

# Programs and headers without machine code are taken from the system, libraries from the cross compiler's own.
set(CMAKE_FIND_ROOT_PATH /usr/arm-linux-gnueabi)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
