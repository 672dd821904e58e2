// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_ABI_RUNTIME_LIBRARY_H
#define CPP2C_TESTS_ABI_RUNTIME_LIBRARY_H

#include <fstream>
#include <string>

#include "include_c"
#include "tests/support/opened_library.h"

// The library under test, opened at run time instead of linked. CPP2C_LIBRARY is its path.
class RuntimeLibrary : public OpenedLibrary {
 public:
  RuntimeLibrary() : OpenedLibrary(CPP2C_LIBRARY) {}

  // Whether the library is mapped into the process.
  static bool isMapped() {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
      if (line.find("libcpp2c.so") != std::string::npos) return true;
    }
    return false;
  }

  // Its functions, without their prefix "c_".
  decltype(::c_cfm_get_regist_observer_callback)* cfm_get_regist_observer_callback =
      find<decltype(::c_cfm_get_regist_observer_callback)>("c_cfm_get_regist_observer_callback");
  decltype(::c_cfm_regist_observer)* cfm_regist_observer =
      find<decltype(::c_cfm_regist_observer)>("c_cfm_regist_observer");
  decltype(::c_context_deinit)* context_deinit = find<decltype(::c_context_deinit)>("c_context_deinit");
  decltype(::c_context_init)* context_init = find<decltype(::c_context_init)>("c_context_init");
  decltype(::c_dbc_add_userdata)* dbc_add_userdata =
      find<decltype(::c_dbc_add_userdata)>("c_dbc_add_userdata");
  decltype(::c_dbc_create)* dbc_create = find<decltype(::c_dbc_create)>("c_dbc_create");
  decltype(::c_dbc_get_userdata)* dbc_get_userdata =
      find<decltype(::c_dbc_get_userdata)>("c_dbc_get_userdata");
  decltype(::c_event_regist_observer)* event_regist_observer =
      find<decltype(::c_event_regist_observer)>("c_event_regist_observer");
  decltype(::c_loop_add_fd)* loop_add_fd = find<decltype(::c_loop_add_fd)>("c_loop_add_fd");
  decltype(::c_module_regist)* module_regist = find<decltype(::c_module_regist)>("c_module_regist");
  decltype(::c_module_unregist)* module_unregist = find<decltype(::c_module_unregist)>("c_module_unregist");
};

#endif
