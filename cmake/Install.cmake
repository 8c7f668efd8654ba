# What `cmake --install` lays out under the prefix: the library with the host
# platform libraries it loads, every header a caller compiles against (all
# under include/metadataHelper, so generic names such as
# system/camera_metadata.h stay out of the prefix's own include folder), a
# CMake package and a pkg-config file. Both descriptions are relocatable: the
# tree works from whatever prefix it is installed or copied to.
include(CMakePackageConfigHelpers)

set(METAHELPER_PACKAGE_VERSION 1.0.0)
set(METAHELPER_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/metadataHelper)
set(METAHELPER_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/metadataHelper)
set(METAHELPER_INSTALL_PKGCONFIGDIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(installed_libraries metadataHelper nvmetadatautils metatagwrapper nvdebug)

# The targets name their header folders in the source tree; installed, every
# header sits in one folder.
foreach(target IN LISTS installed_libraries)
  get_target_property(build_dirs ${target} INTERFACE_INCLUDE_DIRECTORIES)
  list(TRANSFORM build_dirs PREPEND "$<BUILD_INTERFACE:")
  list(TRANSFORM build_dirs APPEND ">")
  set_target_properties(${target} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${build_dirs}")
  target_include_directories(${target} INTERFACE $<INSTALL_INTERFACE:${METAHELPER_INSTALL_INCLUDEDIR}>)
endforeach()
# The public headers use C++17.
target_compile_features(metadataHelper INTERFACE cxx_std_17)

install(TARGETS ${installed_libraries} EXPORT metadataHelperTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${METAHELPER_INSTALL_INCLUDEDIR})
# The platform headers the public ones include, and the logging library's for
# callers that change its settings. The MediaTek headers are the library's own
# business and stay out.
set(platform_headers ${PROJECT_SOURCE_DIR}/platform/include)
install(FILES ${platform_headers}/NvMetadata.h ${platform_headers}/MetaTagWrapper.h
              ${platform_headers}/MetaTagIndex.def
  DESTINATION ${METAHELPER_INSTALL_INCLUDEDIR})
install(DIRECTORY ${platform_headers}/system ${platform_headers}/nvdebug
  DESTINATION ${METAHELPER_INSTALL_INCLUDEDIR})

install(EXPORT metadataHelperTargets NAMESPACE metadataHelper::
  DESTINATION ${METAHELPER_INSTALL_CMAKEDIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/metadataHelperConfig.cmake.in
  ${CMAKE_BINARY_DIR}/metadataHelperConfig.cmake
  INSTALL_DESTINATION ${METAHELPER_INSTALL_CMAKEDIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/metadataHelperConfigVersion.cmake
  VERSION ${METAHELPER_PACKAGE_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/metadataHelperConfig.cmake ${CMAKE_BINARY_DIR}/metadataHelperConfigVersion.cmake
  DESTINATION ${METAHELPER_INSTALL_CMAKEDIR})

# pkg-config finds the prefix from where the file lies.
file(RELATIVE_PATH METAHELPER_PKGCONFIG_TO_PREFIX /${METAHELPER_INSTALL_PKGCONFIGDIR} /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/metadataHelper.pc.in ${CMAKE_BINARY_DIR}/metadataHelper.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/metadataHelper.pc DESTINATION ${METAHELPER_INSTALL_PKGCONFIGDIR})
