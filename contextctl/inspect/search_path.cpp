// SPDX-License-Identifier: MIT
#include "contextctl/inspect/search_path.h"

#include <glob.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

namespace contextctl {
namespace {

std::vector<std::string> matchingFiles(const std::string& pattern) {
  std::vector<std::string> files;
  glob_t found = {};
  if (glob(pattern.c_str(), 0, nullptr, &found) == 0)
    files.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
  globfree(&found);
  return files;
}

// Lines are folders or "include PATTERN". Each file is read once, even if files include each other.
void readLoaderConfiguration(const std::string& file, const std::string& root, std::set<std::string>& seen,
                             std::vector<std::string>& folders) {
  if (!seen.insert(file).second) return;
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) {
    std::istringstream words(line.substr(0, line.find('#')));
    std::string word, pattern;
    words >> word >> pattern;
    if (word == "include") {
      const std::string place = pattern[0] == '/' ? root : file.substr(0, file.rfind('/') + 1);
      for (const std::string& included : matchingFiles(place + pattern))
        readLoaderConfiguration(included, root, seen, folders);
    } else if (!word.empty()) {
      folders.push_back(root + word);
    }
  }
}

std::vector<std::string> standardFolders(const std::string& root) {
  std::vector<std::string> folders;
  std::set<std::string> seen;
  readLoaderConfiguration(root + "/etc/ld.so.conf", root, seen, folders);
  for (const char* folder : {"/lib", "/usr/lib", "/lib64", "/usr/lib64"}) folders.push_back(root + folder);
  return folders;
}

}  // namespace

std::vector<std::string> splitFolders(const std::string& folders) {
  std::vector<std::string> parts;
  std::istringstream stream(folders);
  for (std::string part; std::getline(stream, part, ':');)
    if (!part.empty()) parts.push_back(part);
  return parts;
}

SearchPath makeSearchPath(const std::string& folders, const std::string& root) {
  SearchPath search;
  search.root = root;
  search.named = splitFolders(folders);
  const char* environment = std::getenv("LD_LIBRARY_PATH");
  if (root.empty() && environment != nullptr)
    for (const std::string& folder : splitFolders(environment)) search.named.push_back(folder);
  search.standard = standardFolders(root);
  return search;
}

}  // namespace contextctl
