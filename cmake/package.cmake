# What `cmake --install` puts where, and the archive that `cmake --build ... --target package` makes.
#
# A Windows host looks for the module and its inflow library in one folder, so everything that is
# loaded or started stands at the top there; elsewhere the usual folders hold it.

include(GNUInstallDirs)

if(WIN32)
  install(TARGETS Intersect InflowCalc fieldrun tanksim RUNTIME DESTINATION .)
  install(FILES cmake/windows/INSTALL.txt DESTINATION .)
  # OPM Flow runs on Linux alone.
  install(DIRECTORY examples DESTINATION . PATTERN results EXCLUDE
          PATTERN "flow*.toml" EXCLUDE PATTERN "*_FLOW.afi" EXCLUDE PATTERN "*.DATA" EXCLUDE)
else()
  set(built Intersect InflowCalc fieldrun tanksim flowlink runfactory)
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
  install(FILES companions/cluster/runfactory.service DESTINATION ${texts})
endif()

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
