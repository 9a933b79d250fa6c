# The files that `cmake --install` installs: the command, the libraries and headers, the reference
# simulator, the CMake package `fabscan` and a pkg-config file of the same name.
include(CMakePackageConfigHelpers)

# Everything that is installed, without the tests.
add_custom_target(fabscan_product
  DEPENDS fabscan fabscan_generator fabscan_model reference)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/fabscan)
set(own_include_dir ${CMAKE_INSTALL_INCLUDEDIR}/fabscan)
set(simulator_dir ${own_include_dir}/simulator)

set_target_properties(fabscan_generator PROPERTIES EXPORT_NAME generator)
set_target_properties(fabscan_model PROPERTIES EXPORT_NAME model)

install(DIRECTORY include/infiniband DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES fabscan/fabscan_sim_info_dump.h model/harmless_name.h DESTINATION ${own_include_dir})
install(DIRECTORY simulator/core simulator/include simulator/devices
  DESTINATION ${simulator_dir}
  PATTERN "*_test.cpp" EXCLUDE)
install(DIRECTORY records DESTINATION ${simulator_dir}/include
  FILES_MATCHING PATTERN "*.h" PATTERN "record_kinds.h" EXCLUDE)

install(TARGETS fabscan_generator fabscan_model EXPORT fabscan
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${own_include_dir})
install(TARGETS fabscan_simulator EXPORT fabscan
  INCLUDES DESTINATION
    ${CMAKE_INSTALL_INCLUDEDIR} ${simulator_dir}/include ${simulator_dir}/devices/example)
install(EXPORT fabscan NAMESPACE fabscan:: FILE fabscanTargets.cmake DESTINATION ${package_dir})

configure_package_config_file(cmake/fabscanConfig.cmake.in
  ${PROJECT_BINARY_DIR}/generated/fabscanConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/generated/fabscanConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/generated/fabscanConfig.cmake
  ${PROJECT_BINARY_DIR}/generated/fabscanConfigVersion.cmake
  DESTINATION ${package_dir})

# The prefix relative to the pkg-config file, so that the installed tree can be moved.
file(RELATIVE_PATH prefix_from_pc
  /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(packaging/fabscan.pc.in ${PROJECT_BINARY_DIR}/generated/fabscan.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/generated/fabscan.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
