// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_SEARCH_PATH_H
#define CPP2C_CONTEXTCTL_INSPECT_SEARCH_PATH_H

#include <string>
#include <vector>

namespace contextctl {

// The folders where the loader searches for libraries, without those that libraries specify.
struct SearchPath {
  std::string root;                   // of the file system; empty: this machine
  std::vector<std::string> named;     // from the user and LD_LIBRARY_PATH; searched first
  std::vector<std::string> standard;  // from ld.so.conf and built in; searched last
};

// `folders` is colon-separated. LD_LIBRARY_PATH applies to this machine only.
SearchPath makeSearchPath(const std::string& folders, const std::string& root);

std::vector<std::string> splitFolders(const std::string& folders);

}  // namespace contextctl

#endif
