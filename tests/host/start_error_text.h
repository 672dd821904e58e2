// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_CONTEXT_START_ERROR_TEXT_H
#define CPP2C_TESTS_CONTEXT_START_ERROR_TEXT_H

#include <string>

#include "host/start_error.h"

// The result code and the message of the StartError that the call throws; "" if it throws none.
template <typename Call>
std::string startErrorOf(Call call) {
  try {
    call();
  } catch (const StartError& error) {
    return std::to_string(error.code()) + ' ' + error.what();
  }
  return "";
}

#endif
