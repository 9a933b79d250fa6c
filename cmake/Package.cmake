# A Debian package of the installed files: run `cpack` in the build directory. Its dependencies are
# read from the built command.
set(compressed_changes ${PROJECT_BINARY_DIR}/generated/changelog.gz)
add_custom_command(OUTPUT ${compressed_changes}
  COMMAND sh -c "gzip -9nc '${PROJECT_SOURCE_DIR}/CHANGELOG.md' >'${compressed_changes}'"
  DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md
  VERBATIM)
add_custom_target(compressed_changes ALL DEPENDS ${compressed_changes})
add_dependencies(fabscan_product compressed_changes)
install(FILES packaging/copyright ${compressed_changes} DESTINATION ${CMAKE_INSTALL_DOCDIR})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME fabscan)
set(CPACK_PACKAGE_CONTACT "the fabscan developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION "\
The command fabscan discovers or imports an InfiniBand fabric, saves it,
compares such snapshots, and writes C++ source that gives the switches,
routers and adapters of a fabric simulator the attribute values that the real
ones answered with. It comes with the libraries and headers that a tool of
one's own links, and with a reference simulator that generated files compile
against.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# `verify` compiles.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS g++)
include(CPack)
