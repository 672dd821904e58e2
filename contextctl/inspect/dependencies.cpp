// SPDX-License-Identifier: MIT
#include "contextctl/inspect/dependencies.h"

#include <unistd.h>

#include <filesystem>
#include <optional>
#include <set>

#include "contextctl/inspect/library.h"
#include "contextctl/inspect/search_path.h"
#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

using Folders = std::vector<std::string>;

void append(Folders& folders, const Folders& more) {
  folders.insert(folders.end(), more.begin(), more.end());
}

// Each library is searched in each folder.
void requireFew(size_t count, const Library& library, const std::string& verb, const std::string& what) {
  constexpr size_t kMost = 1000;
  if (count <= kMost) return;
  throw Failure(kExitNoAnswer,
                library.path + ": it " + verb + " more than " + std::to_string(kMost) + ' ' + what);
}

class DependencyFinder {
 public:
  DependencyFinder(const Library& ours, const SearchPath& search) : ours_(ours), search_(search) {}

  // `inherited` are the RPATH folders of the libraries that need this one.
  void visit(const Library& library, const Folders& inherited);

  std::vector<Dependency> found() { return std::move(found_); }

 private:
  Folders expand(const std::string& folders, const Library& library) const;
  Folders foldersFor(const Library& library, const Folders& rpaths) const;
  std::optional<Library> locate(Dependency& dependency, const Folders& folders) const;
  std::optional<Library> tryFile(Dependency& dependency, const std::string& file) const;

  const Library& ours_;
  const SearchPath& search_;
  std::set<std::string> seen_;
  std::vector<Dependency> found_;
};

void DependencyFinder::visit(const Library& library, const Folders& inherited) {
  Folders rpaths;
  if (library.runpath.empty()) rpaths = expand(library.rpath, library);
  append(rpaths, inherited);
  const Folders folders = foldersFor(library, rpaths);
  for (const std::string& name : library.needed) {
    if (!seen_.insert(name).second) continue;
    requireFew(seen_.size(), library, "needs", "libraries");
    Dependency dependency{name, library.path, "", ""};
    if (const std::optional<Library> file = locate(dependency, folders)) visit(*file, rpaths);
    found_.push_back(dependency);
  }
}

// $ORIGIN is the folder of the library.
Folders DependencyFinder::expand(const std::string& folders, const Library& library) const {
  const std::string origin = std::filesystem::absolute(library.path).parent_path();
  Folders expanded;
  for (std::string folder : splitFolders(folders)) {
    bool has_origin = false;
    for (const std::string token : {"$ORIGIN", "${ORIGIN}"}) {
      const size_t at = folder.find(token);
      if (at == std::string::npos) continue;
      folder.replace(at, token.size(), origin);
      has_origin = true;
    }
    expanded.push_back(has_origin ? folder : search_.root + folder);
  }
  return expanded;
}

// A RUNPATH disables the RPATHs.
Folders DependencyFinder::foldersFor(const Library& library, const Folders& rpaths) const {
  Folders folders;
  if (library.runpath.empty()) folders = rpaths;
  append(folders, search_.named);
  append(folders, expand(library.runpath, library));
  append(folders, search_.standard);
  requireFew(folders.size(), library, "searches", "folders");
  return folders;
}

std::optional<Library> DependencyFinder::locate(Dependency& dependency, const Folders& folders) const {
  if (dependency.name == ours_.soname) return tryFile(dependency, ours_.path);
  if (dependency.name.find('/') != std::string::npos)
    return tryFile(dependency, search_.root + dependency.name);
  for (const std::string& folder : folders)
    if (std::optional<Library> library = tryFile(dependency, folder + '/' + dependency.name)) return library;
  return std::nullopt;
}

// Like the loader, skips files for other machines and continues the search.
std::optional<Library> DependencyFinder::tryFile(Dependency& dependency, const std::string& file) const {
  if (access(file.c_str(), F_OK) != 0) return std::nullopt;
  try {
    Library library = readLibrary(file);
    if (sameLoader(library.platform, ours_.platform)) {
      dependency.path = file;
      return library;
    }
    dependency.problem = file + " is for another machine";
  } catch (const Failure& failure) {
    dependency.problem = failure.what();
  }
  return std::nullopt;
}

}  // namespace

std::vector<Dependency> findDependencies(const Library& library, const Library& ours,
                                         const SearchPath& search) {
  DependencyFinder finder(ours, search);
  finder.visit(library, {});
  return finder.found();
}

}  // namespace contextctl
