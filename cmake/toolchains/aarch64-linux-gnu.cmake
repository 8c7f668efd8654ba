# Cross build for the device's CPU with Debian's aarch64-linux-gnu toolchain.
# Target programs (tests, test discovery) run on the build machine under
# qemu-aarch64, started explicitly: binfmt handlers are not assumed.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)

set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)

# Libraries, headers and packages come from the target's root only; the
# host's would link or compile but not run. Programs are host tools.
set(AARCH64_TARGET_ROOT /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH ${AARCH64_TARGET_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# -L makes qemu resolve the target's loader and C library under the target
# root; every other library is found through the programs' build RPATH.
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${AARCH64_TARGET_ROOT})
