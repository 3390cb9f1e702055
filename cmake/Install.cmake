include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ovxmllib)
install(
  TARGETS ovxmllib
  EXPORT ovxmllib
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT ovxmllib NAMESPACE ovxmllib:: FILE ovxmllibTargets.cmake DESTINATION ${package_dir})

configure_package_config_file(cmake/ovxmllibConfig.cmake.in ovxmllibConfig.cmake INSTALL_DESTINATION ${package_dir})
# Generated code runs only with the library of its own major and minor version.
write_basic_package_version_file(ovxmllibConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ovxmllibConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/ovxmllibConfigVersion.cmake
        DESTINATION ${package_dir})

# Relative to the file itself, so that it holds wherever `cmake --install --prefix` puts it.
file(RELATIVE_PATH pc_dir_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
file(RELATIVE_PATH prefix_to_libdir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH prefix_to_includedir ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
string(REGEX REPLACE "/$" "" pc_dir_to_prefix ${pc_dir_to_prefix})
configure_file(cmake/ovxmllib.pc.in ovxmllib.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/ovxmllib.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
