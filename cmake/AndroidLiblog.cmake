# The real Android liblog, from Debian's android-liblog-dev, which installs it
# outside the default search path. A cross build takes the target's copy from
# a folder the arm64 package files were unpacked into (scripts/arm64-test
# does it): installed system-wide, they would bring a second target C library
# that makes fork() hang in programs run under qemu.
if(CMAKE_CROSSCOMPILING)
  set(ANDROID_LIBLOG_ROOT ${CMAKE_BINARY_DIR}/sysroot CACHE PATH
      "Folder holding the target's unpacked android-liblog and android-liblog-dev packages")
else()
  set(ANDROID_LIBLOG_ROOT "")
endif()

find_library(ANDROID_LIBLOG NAMES log
  PATHS ${ANDROID_LIBLOG_ROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/android
  NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
find_path(ANDROID_LIBLOG_INCLUDE android/log.h
  PATHS ${ANDROID_LIBLOG_ROOT}/usr/include/android NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
if(NOT ANDROID_LIBLOG OR NOT ANDROID_LIBLOG_INCLUDE)
  message(FATAL_ERROR "Android liblog for ${CMAKE_LIBRARY_ARCHITECTURE} not found under "
    "'${ANDROID_LIBLOG_ROOT}/usr': install android-liblog-dev (host build) or run "
    "scripts/arm64-test, which unpacks the arm64 packages there (cross build)")
endif()

add_library(android::log SHARED IMPORTED)
set_target_properties(android::log PROPERTIES
  IMPORTED_LOCATION ${ANDROID_LIBLOG}
  INTERFACE_INCLUDE_DIRECTORIES ${ANDROID_LIBLOG_INCLUDE})
get_filename_component(ANDROID_LIBLOG_DIR ${ANDROID_LIBLOG} DIRECTORY)
