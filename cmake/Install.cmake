# Installation rules. Each component becomes a package: runtime, development, host.
include(CMakePackageConfigHelpers)

# Compresses a file as Debian requires, without a time stamp, and installs it as NAME.gz.
function(install_compressed component source destination)
  cmake_path(GET source FILENAME name)
  set(output ${PROJECT_BINARY_DIR}/compressed/${name}.gz)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${source})
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/compressed)
  execute_process(COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/${source} OUTPUT_FILE ${output} COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${output} DESTINATION ${destination} COMPONENT ${component})
endfunction()

# Installs the licence and the changelog of a package where Debian requires them.
function(install_package_documents component package)
  set(doc_dir ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package})
  install(FILES LICENSE DESTINATION ${doc_dir} COMPONENT ${component} RENAME copyright)
  install_compressed(${component} packaging/changelog ${doc_dir})
endfunction()

set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/cpp2c)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/cpp2c)

install(TARGETS cpp2c EXPORT cpp2cTargets
  LIBRARY
    DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT runtime
    NAMELINK_COMPONENT development
  FILE_SET HEADERS
    DESTINATION ${header_dir}
    COMPONENT development
  INCLUDES DESTINATION ${header_dir}  # for CMake before 3.23, which does not support file sets
)
install(TARGETS cpp2c_interfaces FILE_SET HEADERS DESTINATION ${header_dir} COMPONENT development)
install_package_documents(runtime libcpp2c1)
install_package_documents(development libcpp2c-dev)
install(FILES host/include/cpp2c_host.h DESTINATION ${header_dir} COMPONENT development)

install(EXPORT cpp2cTargets NAMESPACE cpp2c:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(packaging/cpp2cConfig.cmake.in cpp2cConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(cpp2cConfigVersion.cmake COMPATIBILITY SameMajorVersion)
# Relative, so that the installed tree can be moved.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE prefix_from_pkgconfigdir)
configure_file(packaging/cpp2c.pc.in cpp2c.pc @ONLY)
install(FILES
  ${PROJECT_BINARY_DIR}/cpp2cConfig.cmake
  ${PROJECT_BINARY_DIR}/cpp2cConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/cpp2c.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

if(CPP2C_CONTEXT)
  set(host_libdir ${CMAKE_INSTALL_LIBDIR}/cpp2c)
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_FULL_LIBDIR BASE_DIRECTORY ${CMAKE_INSTALL_FULL_BINDIR}
    OUTPUT_VARIABLE libdir_from_bindir)
  set(CPP2C_HOST_LIBDIR_FROM_BINDIR ${libdir_from_bindir}/cpp2c)
  configure_file(packaging/cpp2c-host.in cpp2c-host @ONLY)
  install(PROGRAMS ${PROJECT_BINARY_DIR}/cpp2c-host DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT host)
  install(TARGETS context_proxy LIBRARY DESTINATION ${host_libdir} COMPONENT host)

  install_package_documents(host cpp2c-host)
  install_compressed(host packaging/cpp2c-host.1 ${CMAKE_INSTALL_MANDIR}/man1)

  install(TARGETS contextctl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT host)
  install_compressed(host packaging/contextctl.1 ${CMAKE_INSTALL_MANDIR}/man1)
  set(completion_dir ${PROJECT_BINARY_DIR}/completion)
  install(FILES ${completion_dir}/contextctl DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    COMPONENT host)
  install(FILES ${completion_dir}/_contextctl DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
    COMPONENT host)
  install(FILES ${completion_dir}/contextctl.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
    COMPONENT host)

  set(example_dir ${host_libdir}/examples)
  install(TARGETS hello linkwatch gateway gateway_report RUNTIME DESTINATION ${example_dir} COMPONENT host)
  install(TARGETS gateway_linkwatch gateway_traffic gateway_address
    LIBRARY DESTINATION ${example_dir} COMPONENT host)
  install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT host USE_SOURCE_PERMISSIONS)
endif()
