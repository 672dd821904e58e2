# Debian packages, built with CPack: one for each component.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME cpp2c)
set(CPACK_PACKAGE_VENDOR "The libcpp2c authors")
set(CPACK_PACKAGE_CONTACT "The libcpp2c authors <maintainers@libcpp2c.invalid>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development host)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)  # the host context depends on libcpp2c.so
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libcpp2c1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
  "Plain C access to an object-oriented service framework
libcpp2c.so, the library for service programs and module libraries written
in C. The framework's context is opened at run time.")
configure_file(packaging/shlibs.in shlibs @ONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  ${PROJECT_SOURCE_DIR}/packaging/triggers
  ${PROJECT_BINARY_DIR}/shlibs)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libcpp2c-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libcpp2c1 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "Development files for libcpp2c
The C header, the framework's C++ interface headers, and descriptions for
CMake and pkg-config.")

set(CPACK_DEBIAN_HOST_PACKAGE_NAME cpp2c-host)
set(CPACK_DEBIAN_HOST_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_HOST_PACKAGE_DEPENDS "libcpp2c1 (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_HOST_DESCRIPTION
  "Host context, its command-line client, and examples for libcpp2c
Runs service programs that use libcpp2c on this machine: the context
library, a launcher that finds it, example services, and contextctl, which
inspects running services and checks whether a library fits libcpp2c.")

include(CPack)
