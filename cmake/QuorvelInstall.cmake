# `cmake --install`: headers, the versioned shared object, the CMake package, the pkg-config file.
# No installed file contains the install prefix, so the tree may be moved as a whole.

include(CMakePackageConfigHelpers)

set(quorvel_cmake_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Quorvel")

install(TARGETS Quorvel EXPORT QuorvelTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/quorvel"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
install(EXPORT QuorvelTargets NAMESPACE Quorvel:: DESTINATION "${quorvel_cmake_dir}")

write_basic_package_version_file("${PROJECT_BINARY_DIR}/QuorvelConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_SOURCE_DIR}/cmake/QuorvelConfig.cmake"
  "${PROJECT_BINARY_DIR}/QuorvelConfigVersion.cmake"
  DESTINATION "${quorvel_cmake_dir}")

# The pkg-config file finds its prefix from its own place.
file(RELATIVE_PATH quorvel_pc_prefix
  "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
string(REGEX REPLACE "/$" "" quorvel_pc_prefix "${quorvel_pc_prefix}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/quorvel.pc.in" "${PROJECT_BINARY_DIR}/quorvel.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/quorvel.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
