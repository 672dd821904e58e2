// SPDX-License-Identifier: MIT
#include "contextctl/inspect/live_child.h"

#include <dlfcn.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <map>

#include "contextctl/inspect/code_place.h"
#include "contextctl/inspect/dependencies.h"
#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/function_names.h"
#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

using GetInstance = void* (*)(void* caller);
using RelInstance = void (*)(void* instance);

class Visitor {
 public:
  explicit Visitor(int pipe) : pipe_(pipe) {}

  void visit(const std::string& path, const std::vector<Dependency>& dependencies, size_t positions);

 private:
  void say(const std::string& line);
  void* open(const std::string& path, const std::vector<Dependency>& dependencies);
  void listSlots(void* instance, size_t positions);
  std::string namesAt(const CodePlace& place);
  const FunctionNames& namesIn(const std::string& file);

  int pipe_;
  std::map<std::string, FunctionNames> names_;
};

void Visitor::visit(const std::string& path, const std::vector<Dependency>& dependencies, size_t positions) {
  void* library = open(path, dependencies);
  if (library == nullptr) return say(std::string("trouble\tit does not open: ") + dlerror());
  const auto get = reinterpret_cast<GetInstance>(dlsym(library, "getInstance"));
  const auto release = reinterpret_cast<RelInstance>(dlsym(library, "relInstance"));
  if (get == nullptr || release == nullptr) return say("trouble\tan entry point is missing");

  say("stage\tgetInstance");
  void* instance = get(nullptr);
  if (instance == nullptr) return say("trouble\tgetInstance gave no instance");
  say("stage\tthe walk through its virtual table");
  listSlots(instance, positions);
  say("stage\trelInstance");
  release(instance);
  say("done");
}

// One write a line, so that none is lost in a crash.
void Visitor::say(const std::string& line) {
  const std::string text = line + '\n';
  if (write(pipe_, text.data(), text.size()) < 0) _exit(kExitNoAnswer);
}

// The loader takes a library that is open already, whatever folder it came from.
void* Visitor::open(const std::string& path, const std::vector<Dependency>& dependencies) {
  say("stage\topening it");
  for (const Dependency& dependency : dependencies) dlopen(dependency.path.c_str(), RTLD_LAZY);
  return dlopen(path.c_str(), RTLD_LAZY | RTLD_GLOBAL);
}

void Visitor::listSlots(void* instance, size_t positions) {
  const void* const* table = nullptr;
  std::memcpy(&table, instance, sizeof table);
  for (size_t i = 0; i < positions; i++) {
    const auto place = findCode(table[i]);
    say("slot" + (place ? namesAt(*place) : ""));
  }
}

// Their names, parted by tabs. Stripped code has a place instead.
std::string Visitor::namesAt(const CodePlace& place) {
  const FunctionNames& names = namesIn(place.file);
  const auto found = names.find(place.address);
  if (found == names.end()) {
    char offset[32];
    std::snprintf(offset, sizeof offset, "+0x%llx", static_cast<unsigned long long>(place.address));
    return '\t' + place.file.substr(place.file.rfind('/') + 1) + offset;
  }
  std::string line;
  for (const std::string& name : found->second) line += '\t' + name;
  return line;
}

// None if the file cannot be read, as the kernel's own library cannot.
const FunctionNames& Visitor::namesIn(const std::string& file) {
  auto names = names_.find(file);
  if (names != names_.end()) return names->second;
  try {
    return names_[file] = readFunctionNames(ElfImage(file));
  } catch (const Failure&) {
    return names_[file];
  }
}

// Its output goes beside the report, not into it; it dies by its signals, and with its parent.
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
  Visitor(pipe).visit(path, dependencies, positions);
  _exit(kExitOk);
}

}  // namespace contextctl
