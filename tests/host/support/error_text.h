// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_HOST_SUPPORT_ERROR_TEXT_H
#define CPP2C_TESTS_HOST_SUPPORT_ERROR_TEXT_H

#include <string>

#include "util/error.h"

namespace host {

// The result code and the message of the util::Error that the call throws; "" if it throws none.
template <typename Call>
std::string errorOf(Call call) {
  try {
    call();
  } catch (const util::Error& error) {
    return std::to_string(error.code()) + ' ' + error.what();
  }
  return "";
}

}  // namespace host

#endif
