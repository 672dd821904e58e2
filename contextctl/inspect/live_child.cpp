// SPDX-License-Identifier: MIT
#include "contextctl/inspect/live_child.h"

#include <dlfcn.h>
#include <link.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <optional>
#include <set>

#include "contextctl/inspect/dependencies.h"
#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/mangled_name.h"
#include "contextctl/inspect/symbol_names.h"
#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

using GetInstance = void* (*)(void* caller);
using RelInstance = void (*)(void* instance);

// The place of an address of this process in the file that it was loaded from.
struct CodePlace {
  std::string file;
  std::uint64_t address;  // in the address space of the file
};

struct Search {
  std::uintptr_t address;
  std::optional<CodePlace> found;
};

int findInObject(dl_phdr_info* object, size_t, void* user) {
  auto& search = *static_cast<Search*>(user);
  const std::uintptr_t offset = search.address - object->dlpi_addr;
  for (int i = 0; i < object->dlpi_phnum; i++) {
    const ElfW(Phdr)& segment = object->dlpi_phdr[i];
    const bool is_code = segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0;
    if (!is_code || offset < segment.p_vaddr || offset - segment.p_vaddr >= segment.p_memsz) continue;
    const std::string name = object->dlpi_name;
    search.found = CodePlace{name.empty() ? "/proc/self/exe" : name, offset};
    return 1;
  }
  return 0;
}

// Returns nullopt if there is no executable code of a loaded file at the address.
std::optional<CodePlace> findCode(const void* address) {
  Search search{reinterpret_cast<std::uintptr_t>(address), std::nullopt};
  dl_iterate_phdr(findInObject, &search);
  return search.found;
}

class LibraryVisitor {
 public:
  explicit LibraryVisitor(int pipe) : pipe_(pipe) {}

  void visit(const std::string& path, const std::vector<Dependency>& dependencies, size_t positions);

 private:
  void report(const std::string& line);
  void* open(const std::string& path, const std::vector<Dependency>& dependencies);
  void listSlots(void* instance, size_t positions);
  std::string namesAt(const CodePlace& place);
  const FunctionNames& namesIn(const std::string& file);

  int pipe_;
  std::map<std::string, FunctionNames> names_;
};

void LibraryVisitor::visit(const std::string& path, const std::vector<Dependency>& dependencies,
                           size_t positions) {
  void* library = open(path, dependencies);
  if (library == nullptr) return report(std::string("error\tcannot open the library: ") + dlerror());
  const auto get = reinterpret_cast<GetInstance>(dlsym(library, "getInstance"));
  const auto release = reinterpret_cast<RelInstance>(dlsym(library, "relInstance"));
  if (get == nullptr || release == nullptr) return report("error\tan entry point is missing");

  report("step\tgetInstance");
  void* instance = get(nullptr);
  if (instance == nullptr) return report("error\tgetInstance returned no instance");
  report("step\treading the virtual table");
  listSlots(instance, positions);
  report("step\trelInstance");
  release(instance);
  report("done");
}

// Each line is written at once, so that no line is lost in a crash.
void LibraryVisitor::report(const std::string& line) {
  const std::string text = line + '\n';
  if (write(pipe_, text.data(), text.size()) < 0) _exit(kExitNoAnswer);
}

// Opens the dependencies first: the loader then uses them by name, whatever folder they are in.
void* LibraryVisitor::open(const std::string& path, const std::vector<Dependency>& dependencies) {
  report("step\topening the library");
  for (const Dependency& dependency : dependencies) dlopen(dependency.path.c_str(), RTLD_LAZY);
  return dlopen(path.c_str(), RTLD_LAZY | RTLD_GLOBAL);
}

void LibraryVisitor::listSlots(void* instance, size_t positions) {
  const void* const* table = nullptr;
  std::memcpy(&table, instance, sizeof table);
  for (size_t i = 0; i < positions; i++) {
    const auto place = findCode(table[i]);
    report("slot" + (place ? namesAt(*place) : ""));
  }
}

// The names of the function at the place, each after a tab; "FILE+OFFSET" if it is stripped.
std::string LibraryVisitor::namesAt(const CodePlace& place) {
  const FunctionNames& names = namesIn(place.file);
  const auto found = names.find(place.address);
  if (found == names.end()) {
    char offset[32];
    std::snprintf(offset, sizeof offset, "+0x%llx", static_cast<unsigned long long>(place.address));
    return '\t' + place.file.substr(place.file.rfind('/') + 1) + offset;
  }
  std::set<std::string> readable;
  for (const std::string& symbol : found->second) readable.insert(demangle(symbol));
  std::string line;
  for (const std::string& name : readable) line += '\t' + name;
  return line;
}

// No names if the file cannot be read: the library of the kernel is not a file.
const FunctionNames& LibraryVisitor::namesIn(const std::string& file) {
  auto names = names_.find(file);
  if (names != names_.end()) return names->second;
  try {
    return names_[file] = readFunctionNames(ElfImage(file));
  } catch (const Failure&) {
    return names_[file];
  }
}

// Keeps the output of the library out of the report, and lets signals and the end of the parent end the
// process.
void isolate() {
  dup2(STDERR_FILENO, STDOUT_FILENO);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const rlimit no_core = {0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  for (const int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT}) signal(number, SIG_DFL);
}

}  // namespace

void runLiveChild(int pipe, const std::string& path, const std::vector<Dependency>& dependencies,
                  size_t positions) noexcept {
  isolate();
  LibraryVisitor(pipe).visit(path, dependencies, positions);
  _exit(kExitOk);
}

}  // namespace contextctl
