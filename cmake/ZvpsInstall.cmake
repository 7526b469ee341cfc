# Installation: headers, libraries, the CMake package, pkg-config files; and the Debian packages made of them.
include(CMakePackageConfigHelpers)

set(ZVPS_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zvps)

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev FILES_MATCHING PATTERN "*.h")
install(TARGETS zvps zvpcore EXPORT zvpsTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev)
install(TARGETS zvps_static zvpcore_static EXPORT zvpsStaticTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)

install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)

# Two sets, because only the static libraries make their user find OpenMP.
foreach(set zvpsTargets zvpsStaticTargets)
  install(EXPORT ${set} NAMESPACE zvps:: DESTINATION ${ZVPS_CMAKE_DIR} COMPONENT dev)
endforeach()
configure_package_config_file(cmake/zvpsConfig.cmake.in zvpsConfig.cmake INSTALL_DESTINATION ${ZVPS_CMAKE_DIR})
write_basic_package_version_file(zvpsConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zvpsConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/zvpsConfigVersion.cmake
  DESTINATION ${ZVPS_CMAKE_DIR} COMPONENT dev)

# The prefix is found from the file's own place, so that an installed tree can be moved.
file(RELATIVE_PATH ZVPS_PC_PREFIX ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" ZVPS_PC_PREFIX "\${pcfiledir}/${ZVPS_PC_PREFIX}")
cmake_path(APPEND ZVPS_PC_INCLUDEDIR "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
cmake_path(APPEND ZVPS_PC_LIBDIR "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
list(TRANSFORM OpenMP_CXX_LIB_NAMES PREPEND -l OUTPUT_VARIABLE ZVPS_PC_OPENMP)
list(JOIN ZVPS_PC_OPENMP " " ZVPS_PC_OPENMP)
foreach(name zvps zvpcore)
  configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
endforeach()

if(PROJECT_IS_TOP_LEVEL)
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGE_VENDOR "the zvps authors")
  set(CPACK_PACKAGE_CONTACT "the zvps authors <authors@zvps.example>")
  set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_CURRENT_SOURCE_DIR}/LICENSE)
  set(CPACK_STRIP_FILES ON)
  set(CPACK_COMPONENTS_ALL runtime dev)
  set(CPACK_COMPONENTS_GROUPING IGNORE)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)

  set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzvps${PROJECT_VERSION_MAJOR})
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_CURRENT_BINARY_DIR})
  set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "Shared libraries of zvps, signal-processing primitives for 64-bit x86.")

  set(CPACK_DEBIAN_DEV_PACKAGE_NAME libzvps-dev)
  set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
  set(CPACK_COMPONENT_DEV_DEPENDS runtime)
  set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
  set(CPACK_COMPONENT_DEV_DESCRIPTION "Headers, static libraries, CMake package and pkg-config files of zvps.")
  include(CPack)
endif()
