# Header-only packages the tools use (nlohmann_json, CLI11), for cross builds.
# Debian installs them for the host only, and their package files would put
# the host's /usr/include, with the host's C library headers, on the cross
# compiler's path. Instead a build-tree folder holds links to just these
# header trees, and find_package() is answered from it through the
# package redirection folder, which CMake consults before anything else.
if(NOT CMAKE_CROSSCOMPILING)
  return()
endif()

set(CROSS_HEADER_DIR ${CMAKE_BINARY_DIR}/host-headers)

function(cross_header_package package target header_tree version_file)
  if(NOT EXISTS /usr/include/${header_tree} OR NOT EXISTS ${version_file})
    return()  # find_package() then reports the package as missing
  endif()
  file(MAKE_DIRECTORY ${CROSS_HEADER_DIR})
  file(CREATE_LINK /usr/include/${header_tree} ${CROSS_HEADER_DIR}/${header_tree} SYMBOLIC)
  string(TOLOWER ${package} config_name)
  file(WRITE ${CMAKE_FIND_PACKAGE_REDIRECTS_DIR}/${config_name}-config.cmake
    "if(NOT TARGET ${target})\n"
    "  add_library(${target} INTERFACE IMPORTED)\n"
    "  set_target_properties(${target} PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${CROSS_HEADER_DIR})\n"
    "endif()\n")
  configure_file(${version_file} ${CMAKE_FIND_PACKAGE_REDIRECTS_DIR}/${config_name}-config-version.cmake COPYONLY)
endfunction()

cross_header_package(nlohmann_json nlohmann_json::nlohmann_json nlohmann
  /usr/share/cmake/nlohmann_json/nlohmann_jsonConfigVersion.cmake)
cross_header_package(CLI11 CLI11::CLI11 CLI /usr/share/cmake/CLI11/CLI11ConfigVersion.cmake)
