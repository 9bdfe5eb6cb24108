# What `cmake --install` puts where, and the archive that `cmake --build ... --target package` makes.
#
# A Windows host looks for the module and its inflow library in one folder, so everything that is
# loaded or started stands at the top there; elsewhere the usual folders hold it.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

if(WIN32)
  set(config cmake)
  install(TARGETS Intersect InflowCalc EXPORT GantryTargets
          RUNTIME DESTINATION . ARCHIVE DESTINATION lib)
  install(TARGETS fieldrun tanksim RUNTIME DESTINATION .)
  # Texts that a Windows editor of any age shows line by line.
  foreach(text cmake/windows/INSTALL.txt LICENSE)
    get_filename_component(name ${text} NAME_WE)
    configure_file(${text} ${CMAKE_BINARY_DIR}/texts/${name}.txt @ONLY NEWLINE_STYLE CRLF)
    install(FILES ${CMAKE_BINARY_DIR}/texts/${name}.txt DESTINATION .)
  endforeach()
  install(DIRECTORY docs DESTINATION .)
  # OPM Flow runs on Linux alone.
  install(DIRECTORY examples DESTINATION . PATTERN results EXCLUDE
          PATTERN "flow*.toml" EXCLUDE PATTERN "*_FLOW.afi" EXCLUDE PATTERN "*.DATA" EXCLUDE)
else()
  set(config ${CMAKE_INSTALL_LIBDIR}/cmake/Gantry)
  install(TARGETS Intersect InflowCalc EXPORT GantryTargets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  file(RELATIVE_PATH GANTRY_PC_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  configure_file(cmake/gantry.pc.in gantry.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/gantry.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

  set(built fieldrun tanksim flowlink runfactory)
  if(TARGET IntersectDialogs)
    list(APPEND built IntersectDialogs)
    install(TARGETS intersect_dialogs RUNTIME DESTINATION ${CMAKE_INSTALL_LIBDIR})
  endif()
  install(TARGETS ${built}
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  set(texts ${CMAKE_INSTALL_DATADIR}/gantry)
  install(DIRECTORY examples DESTINATION ${texts} USE_SOURCE_PERMISSIONS
          PATTERN results EXCLUDE PATTERN "*.flow" EXCLUDE)
  install(FILES companions/runfactory/runfactory.service DESTINATION lib/systemd/system)
  install(DIRECTORY packaging/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES packaging/completion/gantry.bash RENAME fieldrun
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES packaging/completion/_gantry
          DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
  # Debian looks for the terms under this name.
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/gantry)
  install(FILES LICENSE DESTINATION ${documents} RENAME copyright)
  install(FILES NOTICE CHANGELOG.md DESTINATION ${documents})
  install(DIRECTORY docs/ DESTINATION ${documents})
  if(TARGET gantry_native)
    set(package lib/python3/dist-packages/gantry)
    install(TARGETS gantry_native LIBRARY DESTINATION ${package})
    install(DIRECTORY python/gantry/ DESTINATION ${package}
            FILES_MATCHING PATTERN "*.py" PATTERN "*.pyi" PATTERN py.typed)
  endif()
endif()

# For whoever writes a host or an inflow library: find_package(Gantry), and Gantry::headers.
set_target_properties(gantry_headers PROPERTIES EXPORT_NAME headers)
install(TARGETS gantry_headers EXPORT GantryTargets
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT GantryTargets NAMESPACE Gantry:: DESTINATION ${config} FILE GantryConfig.cmake)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/GantryConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/GantryConfigVersion.cmake DESTINATION ${config})

set(CPACK_PACKAGE_NAME gantry)
set(CPACK_PACKAGE_FILE_NAME gantry-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-x86_64)
string(TOLOWER ${CPACK_PACKAGE_FILE_NAME} CPACK_PACKAGE_FILE_NAME)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR TGZ)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
endif()

# cpack -G DEB: one package for all, under /usr.
set(CPACK_PACKAGE_VENDOR "The developers of Gantry")
set(CPACK_PACKAGE_CONTACT "The developers of Gantry <gantry@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "network and reservoir simulator in lock-step")
set(CPACK_PACKAGE_DESCRIPTION
    "A driver module that couples a field-network host with a reservoir simulator, a command-line\nhost, a reference simulator, an adapter to OPM Flow, a cluster service and a Python package.")
set(CPACK_DEBIAN_FILE_NAME gantry_${PROJECT_VERSION}_amd64.deb)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS adduser)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "python3-numpy")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "libopm-simulators-bin, python3-pandas, python3-scipy")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/debian/postinst
                                       ${PROJECT_SOURCE_DIR}/packaging/debian/postrm)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/cpack_prefix.cmake)
include(CPack)
