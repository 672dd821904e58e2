# What `cmake --install` puts where, in components that become packages: runtime, development, host.
include(CMakePackageConfigHelpers)

# Each package carries the licence where Debian looks for it.
function(install_licence component package)
  install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}
    COMPONENT ${component} RENAME copyright)
endfunction()

set(public_headers
  binding/context.h
  binding/dll_mgr.h
  binding/handlers.h
  boot/boot_context.h
  boot/module.h
  boot/product_config.h
)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/cpp2c)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/cpp2c)

install(TARGETS cpp2c EXPORT cpp2cTargets
  LIBRARY
    DESTINATION ${CMAKE_INSTALL_LIBDIR}
    COMPONENT runtime
    NAMELINK_COMPONENT development
  INCLUDES DESTINATION ${header_dir}
)
install_licence(runtime libcpp2c1)
install_licence(development libcpp2c-dev)
install(FILES framework/inc/include_c context/include/cpp2c_host.h DESTINATION ${header_dir} COMPONENT development)
foreach(header IN LISTS public_headers)
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${header} DESTINATION ${header_dir}/${folder} COMPONENT development)
endforeach()

install(EXPORT cpp2cTargets NAMESPACE cpp2c:: DESTINATION ${package_dir} COMPONENT development)
configure_package_config_file(packaging/cpp2cConfig.cmake.in cpp2cConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(cpp2cConfigVersion.cmake COMPATIBILITY SameMajorVersion)
# Relative, so that a copy of the installed tree can be used wherever it stands.
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

  install_licence(host cpp2c-host)

  set(example_dir ${host_libdir}/examples)
  install(TARGETS hello linkwatch gateway gateway_report RUNTIME DESTINATION ${example_dir} COMPONENT host)
  install(TARGETS gateway_linkwatch gateway_traffic gateway_address
    LIBRARY DESTINATION ${example_dir} COMPONENT host)
  install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT host USE_SOURCE_PERMISSIONS)
endif()
