// SPDX-License-Identifier: MIT
#include "contextctl/inspect/inspect.h"

#include <unistd.h>

#include <filesystem>

#include "contextctl/inspect/checks.h"
#include "contextctl/inspect/dependencies.h"
#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/library.h"
#include "contextctl/inspect/live.h"
#include "contextctl/inspect/search_path.h"
#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

constexpr const char* kOurLibrary = "libcpp2c.so.1";
constexpr const char* kThisProgram = "/proc/self/exe";

// The library of the same build or installation is in a folder beside the folder of this program.
std::string findLibcpp2c(SearchPath search) {
  const std::filesystem::path home = std::filesystem::read_symlink(kThisProgram).parent_path().parent_path();
  search.named.push_back(home / "lib");
  search.named.push_back(home / CPP2C_LIBDIR);
  search.named.insert(search.named.end(), search.standard.begin(), search.standard.end());
  for (const std::string& folder : search.named) {
    std::string path = folder + '/' + kOurLibrary;
    if (access(path.c_str(), R_OK) == 0) return path;
  }
  throw Failure(kExitNoAnswer, std::string("no ") + kOurLibrary + " found; give its path with --against");
}

bool isForeign(const Library& library) {
  static const Platform here = platformOf(ElfImage(kThisProgram));
  return !sameLoader(library.platform, here);
}

}  // namespace

Report inspect(const InspectOptions& options) {
  const SearchPath search = makeSearchPath(options.library_path, options.sysroot);
  const Library library = readLibrary(options.library);
  const Library ours = readLibrary(options.against.empty() ? findLibcpp2c(search) : options.against);
  const bool foreign = isForeign(library);
  if (options.live && foreign) {
    throw Failure(kExitUsage, "--live needs a library for this machine: " + options.library + " is " +
                                  describe(library.platform));
  }

  Report report{options.library, ours.path, {}, {}};
  checkPlatform(library, ours, report.findings);
  checkEntryPoints(library, report.findings);
  checkStrings(library, ours, report.findings);
  std::vector<Dependency> dependencies;
  if (!sameLoader(library.platform, ours.platform) || (foreign && options.sysroot.empty())) {
    noteUncheckedDependencies(library, report.findings);
  } else {
    checkDependencies(dependencies = findDependencies(library, ours, search), report.findings);
  }
  checkUnloading(library, report.findings);
  checkStack(library, report.findings);
  if (options.live) inspectLive(dependencies, options.kind, options.seconds, report);
  return report;
}

}  // namespace contextctl
