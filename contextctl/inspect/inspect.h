// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_INSPECT_H
#define CPP2C_CONTEXTCTL_INSPECT_INSPECT_H

#include <string>

#include "contextctl/inspect/operations.h"
#include "contextctl/inspect/report.h"

namespace contextctl {

struct InspectOptions {
  std::string library;
  std::string against;       // the libcpp2c.so to fit; empty: the one on this machine
  std::string library_path;  // colon-separated folders to search first
  std::string sysroot;       // root folder of another machine's file system; empty: this machine
  LibraryKind kind = LibraryKind::kContext;
  bool live = false;
  double seconds = 10;  // time limit of the live part
};

// Checks whether a context or module library fits libcpp2c. Throws Failure if one of the two cannot be read.
Report inspect(const InspectOptions& options);

}  // namespace contextctl

#endif
