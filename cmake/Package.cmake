# A Debian package of what is installed: `cpack` in the build folder. What it depends on is read off
# the built command.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME fabscan)
set(CPACK_PACKAGE_CONTACT "the fabscan developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# `verify` compiles.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS g++)
include(CPack)
