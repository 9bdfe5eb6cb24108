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
  install(DIRECTORY examples DESTINATION ${texts}
          PATTERN results EXCLUDE PATTERN "*.flow" EXCLUDE)
  install(FILES companions/runfactory/runfactory.service DESTINATION ${texts})
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})
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
include(CPack)
