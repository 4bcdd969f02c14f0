# What is installed, by component: runtime, development, tools, documentation.
include(CMakePackageConfigHelpers)

install(TARGETS orvixrt
  EXPORT OrvixTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development)
# What is loaded by name lives apart from what is linked.
install(TARGETS orvix LIBRARY DESTINATION ${component_directory} COMPONENT runtime)
install(FILES ${PROJECT_SOURCE_DIR}/frame/orvix.classes DESTINATION ${component_directory} COMPONENT runtime)
if(TARGET orvixrt-x11)
  set_target_properties(orvixrt-x11 PROPERTIES INSTALL_RPATH "$ORIGIN/..")
  install(TARGETS orvixrt-x11 LIBRARY DESTINATION ${component_directory} COMPONENT runtime)
endif()

install(TARGETS orvix_headers EXPORT OrvixTargets)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/orvix DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
  PATTERN "*.md" EXCLUDE)
set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Orvix)
install(EXPORT OrvixTargets NAMESPACE Orvix:: DESTINATION ${package_directory} COMPONENT development)
set(ORVIX_COMPONENT ${component_directory}/liborvix.so)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/OrvixConfig.cmake.in ${PROJECT_BINARY_DIR}/OrvixConfig.cmake
  INSTALL_DESTINATION ${package_directory} PATH_VARS ORVIX_COMPONENT)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvixConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OrvixConfig.cmake ${PROJECT_BINARY_DIR}/OrvixConfigVersion.cmake
  DESTINATION ${package_directory} COMPONENT development)
# Relative to where the file lies, so that a moved installation is found.
file(RELATIVE_PATH pc_to_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(${CMAKE_CURRENT_LIST_DIR}/orvix.pc.in ${PROJECT_BINARY_DIR}/orvix.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orvix.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(TARGET orvixctl)
  install(TARGETS orvixctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
  set(completion ${PROJECT_SOURCE_DIR}/tools/completion)
  install(FILES ${completion}/orvixctl.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME orvixctl COMPONENT tools)
  install(FILES ${completion}/_orvixctl DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tools)
  install(FILES ${completion}/orvixctl.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT tools)
  install(FILES ${PROJECT_SOURCE_DIR}/docs/man/orvixctl.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
endif()

install(DIRECTORY ${PROJECT_SOURCE_DIR}/bindings/python/orvix DESTINATION lib/python3/dist-packages COMPONENT python
  FILES_MATCHING PATTERN "*.py" PATTERN "*.pyi" PATTERN "py.typed" PATTERN "reference" EXCLUDE)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/reference DESTINATION lib/python3/dist-packages/orvix COMPONENT python)

install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation
  FILES_MATCHING PATTERN "*.md" PATTERN "*.idl" PATTERN "members" EXCLUDE PATTERN "man" EXCLUDE)
install(FILES ${PROJECT_SOURCE_DIR}/docs/man/orvix.7 DESTINATION ${CMAKE_INSTALL_MANDIR}/man7 COMPONENT documentation)
install(FILES ${PROJECT_SOURCE_DIR}/docs/man/orvix.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT documentation)

if(PROJECT_IS_TOP_LEVEL)
  add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -P ${CMAKE_CURRENT_LIST_DIR}/uninstall.cmake
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR} VERBATIM)
endif()
