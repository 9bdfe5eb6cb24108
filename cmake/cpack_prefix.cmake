# Where the files of a Debian package lie; an archive's lie at its own top.

if(CPACK_GENERATOR STREQUAL "DEB")
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
endif()
