# What a user of the types gets: the program and the schema compiler, two shared libraries, headers under
# include/dornl3, and the descriptions of all that for CMake and pkg-config.
include(CMakePackageConfigHelpers)

set(package ${CMAKE_INSTALL_LIBDIR}/cmake/DornL3UnicastTypes)

set_target_properties(vek DornL3UnicastTypes PROPERTIES INSTALL_RPATH "$ORIGIN")
file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set_target_properties(dornl3 schemac PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")

install(TARGETS vek DornL3UnicastTypes schemac EXPORT DornL3UnicastTypes)
install(TARGETS dornl3)

install(DIRECTORY dornl3 ${PROJECT_BINARY_DIR}/generated/dornl3 DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")
install(DIRECTORY dornl3/schema/ DESTINATION ${CMAKE_INSTALL_DATADIR}/dornl3/schema FILES_MATCHING PATTERN "*.toml")

install(EXPORT DornL3UnicastTypes NAMESPACE DornL3Unicast:: DESTINATION ${package}
  FILE DornL3UnicastTypesTargets.cmake)
configure_package_config_file(cmake/DornL3UnicastTypesConfig.cmake.in DornL3UnicastTypesConfig.cmake
  INSTALL_DESTINATION ${package} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(DornL3UnicastTypesConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/DornL3UnicastTypesConfig.cmake
  ${PROJECT_BINARY_DIR}/DornL3UnicastTypesConfigVersion.cmake
  ${PROJECT_SOURCE_DIR}/cmake/Dornl3AddSchema.cmake
  DESTINATION ${package})

file(RELATIVE_PATH to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/dornl3unicasttypes.pc.in dornl3unicasttypes.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/dornl3unicasttypes.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
