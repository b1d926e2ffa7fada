# Lets another CMake project find_package(vnt), from the build tree (vnt_DIR) or installed.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vnt)
configure_package_config_file(cmake/vntConfig.cmake.in ${PROJECT_BINARY_DIR}/vntConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vntConfigVersion.cmake COMPATIBILITY SameMinorVersion)
export(EXPORT vnt NAMESPACE vnt:: FILE ${PROJECT_BINARY_DIR}/vntTargets.cmake)
install(EXPORT vnt NAMESPACE vnt:: FILE vntTargets.cmake DESTINATION ${package_dir} COMPONENT dev)
install(FILES ${PROJECT_BINARY_DIR}/vntConfig.cmake ${PROJECT_BINARY_DIR}/vntConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT dev)

if(PROJECT_IS_TOP_LEVEL AND UNIX AND NOT APPLE)
  include(cmake/VntPackages.cmake)
endif()
