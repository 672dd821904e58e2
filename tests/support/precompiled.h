// SPDX-License-Identifier: MIT
// Headers that many tests include, precompiled. Each test still includes the headers that it uses.
#ifndef CPP2C_TESTS_SUPPORT_PRECOMPILED_H
#define CPP2C_TESTS_SUPPORT_PRECOMPILED_H

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#endif
