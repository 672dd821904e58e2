// SPDX-License-Identifier: MIT
#include "contextctl/inspect/checks.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

#include "contextctl/inspect/dependencies.h"
#include "contextctl/inspect/library.h"
#include "contextctl/inspect/mangled_name.h"
#include "contextctl/inspect/string_abi.h"
#include "util/text.h"

namespace contextctl {
namespace {

const DynamicSymbol* findSymbol(const Library& library, const std::string& name) {
  const auto symbol = std::find_if(library.symbols.begin(), library.symbols.end(),
                                   [&](const DynamicSymbol& s) { return s.name == name; });
  return symbol == library.symbols.end() ? nullptr : &*symbol;
}

// A common mistake: the function exists, but without C linkage. The parameters follow its name.
bool hasCppFunction(const Library& library, const std::string& name) {
  const std::string mangled = "_Z" + std::to_string(name.size()) + name;
  return std::any_of(library.symbols.begin(), library.symbols.end(), [&](const DynamicSymbol& symbol) {
    return symbol.defined && symbol.name.size() > mangled.size() && util::startsWith(symbol.name, mangled);
  });
}

Finding checkEntryPoint(const Library& library, const std::string& name) {
  const std::string subject = "entry point";
  const DynamicSymbol* symbol = findSymbol(library, name);
  if (symbol == nullptr && hasCppFunction(library, name))
    return {Verdict::kNo, subject, name + " has C++ linkage; declare it extern \"C\""};
  if (symbol == nullptr) return {Verdict::kNo, subject, name + " is missing"};
  if (!symbol->defined) return {Verdict::kNo, subject, name + " is undefined"};
  if (!symbol->function) return {Verdict::kNo, subject, name + " is not a function"};
  return {Verdict::kOk, subject, name};
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

// The first symbols by their C++ names, and how many there are besides.
std::string joinedSymbols(const std::vector<std::string>& symbols) {
  const size_t shown = std::min<size_t>(symbols.size(), 8);
  std::vector<std::string> names;
  std::transform(symbols.begin(), symbols.begin() + static_cast<std::ptrdiff_t>(shown),
                 std::back_inserter(names), demangle);
  const size_t others = symbols.size() - shown;
  return others == 0 ? joined(names) : joined(names) + " and " + std::to_string(others) + " more";
}

}  // namespace

void checkPlatform(const Library& library, const Library& ours, std::vector<Finding>& findings) {
  const std::vector<std::string> different = differences(library.platform, ours.platform);
  for (const std::string& difference : different) findings.push_back({Verdict::kNo, "machine", difference});
  if (different.empty()) findings.push_back({Verdict::kOk, "machine", describe(library.platform)});
}

void checkEntryPoints(const Library& library, std::vector<Finding>& findings) {
  findings.push_back(checkEntryPoint(library, "getInstance"));
  findings.push_back(checkEntryPoint(library, "relInstance"));
}

void checkStrings(const Library& library, const Library& ours, std::vector<Finding>& findings) {
  const StringAbi theirs = stringAbiOf(library.symbols), wanted = stringAbiOf(ours.symbols);
  Verdict verdict = theirs == wanted ? Verdict::kOk : Verdict::kNo;
  if (theirs == StringAbi::kMixed || wanted == StringAbi::kMixed) verdict = Verdict::kWarning;
  if (theirs == StringAbi::kNone || wanted == StringAbi::kNone) verdict = Verdict::kNote;
  std::string text = "uses " + describe(theirs);
  if (theirs != wanted) text += "; libcpp2c uses " + describe(wanted);
  findings.push_back({verdict, "strings", text});
}

void checkDependencies(const std::vector<Dependency>& dependencies, std::vector<Finding>& findings) {
  for (const Dependency& dependency : dependencies) {
    if (!dependency.path.empty()) {
      findings.push_back({Verdict::kOk, "needs", dependency.name + ": " + dependency.path});
      continue;
    }
    std::string text = dependency.name + ": not found, needed by " + dependency.needed_by;
    if (!dependency.problem.empty()) text += "; " + dependency.problem;
    findings.push_back({Verdict::kNo, "needs", text});
  }
}

void noteUncheckedDependencies(const Library& library, std::vector<Finding>& findings) {
  const std::string text =
      joined(library.needed) + ": not checked; give the root folder of the other machine with --sysroot";
  if (!library.needed.empty()) findings.push_back({Verdict::kNote, "needs", text});
}

void checkUnloading(const Library& library, std::vector<Finding>& findings) {
  std::vector<std::string> unique;
  for (const DynamicSymbol& symbol : library.symbols)
    if (symbol.unique) unique.push_back(symbol.name);
  if (library.no_delete)
    findings.push_back({Verdict::kWarning, "unloading", "marked as never to be unloaded"});
  if (!unique.empty()) {
    findings.push_back(
        {Verdict::kWarning, "unloading",
         "stays in the process once loaded because of unique symbols: " + joinedSymbols(unique)});
  }
  if (unique.empty() && !library.no_delete)
    findings.push_back({Verdict::kOk, "unloading", "nothing keeps it in the process"});
}

void checkStack(const Library& library, std::vector<Finding>& findings) {
  findings.push_back(library.executable_stack
                         ? Finding{Verdict::kWarning, "stack", "makes the stack of the process executable"}
                         : Finding{Verdict::kOk, "stack", "not executable"});
}

}  // namespace contextctl
