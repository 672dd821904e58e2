// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_SEARCH_PATH_H
#define CPP2C_CONTEXTCTL_INSPECT_SEARCH_PATH_H

#include <string>
#include <vector>

namespace contextctl {

// Where the loader looks for libraries, apart from what the libraries themselves say.
struct SearchPath {
  std::string root;                   // that absolute folders stand under; empty: this machine's own
  std::vector<std::string> named;     // by the user and by LD_LIBRARY_PATH: looked through first
  std::vector<std::string> standard;  // by ld.so.conf and by custom: looked through last
};

// `folders` is colon-separated. LD_LIBRARY_PATH counts for this machine's own root only.
SearchPath makeSearchPath(const std::string& folders, const std::string& root);

std::vector<std::string> splitFolders(const std::string& folders);

}  // namespace contextctl

#endif
