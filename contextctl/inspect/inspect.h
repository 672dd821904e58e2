// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_INSPECT_H
#define CPP2C_CONTEXTCTL_INSPECT_INSPECT_H

#include <string>

#include "contextctl/inspect/operations.h"
#include "contextctl/inspect/report.h"

namespace contextctl {

struct InspectOptions {
  std::string library;
  std::string against;       // the libcpp2c.so that it is to fit; empty: the one that programs here get
  std::string library_path;  // colon-separated folders, looked through first
  std::string sysroot;       // where another machine's folders stand; empty: this machine
  Kind kind = Kind::kContext;
  bool live = false;
  double seconds = 10;  // that the live part may take
};

// Says whether a context or module library fits libcpp2c. Throws Failure if one of them cannot be read.
Report inspect(const InspectOptions& options);

}  // namespace contextctl

#endif
