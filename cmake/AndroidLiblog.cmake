# Debian ships the real Android liblog outside the default search path.
find_library(ANDROID_LIBLOG NAMES log
  PATHS /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/android NO_DEFAULT_PATH REQUIRED)
find_path(ANDROID_LIBLOG_INCLUDE android/log.h PATHS /usr/include/android REQUIRED)
add_library(android::log SHARED IMPORTED)
set_target_properties(android::log PROPERTIES
  IMPORTED_LOCATION ${ANDROID_LIBLOG}
  INTERFACE_INCLUDE_DIRECTORIES ${ANDROID_LIBLOG_INCLUDE})
get_filename_component(ANDROID_LIBLOG_DIR ${ANDROID_LIBLOG} DIRECTORY)
