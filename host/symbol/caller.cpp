// SPDX-License-Identifier: MIT
#include "host/symbol/caller.h"

#include <dlfcn.h>
#include <execinfo.h>

#include "include_c"

namespace host {
namespace {

constexpr int kMaxFrames = 32;

const void* libraryOf(const void* address) {
  Dl_info info{};
  return dladdr(address, &info) != 0 ? info.dli_fbase : nullptr;
}

template <typename Function>
const void* libraryWith(Function* function) {
  return libraryOf(reinterpret_cast<const void*>(function));
}

}  // namespace

const void* callerOfTheContext() {
  const void* const context = libraryWith(&callerOfTheContext);
  const void* const library = libraryWith(&c_loop_run);
  void* frames[kMaxFrames];
  const int count = backtrace(frames, kMaxFrames);
  bool inside = false;  // a sanitizer's frames precede ours
  for (int i = 0; i < count; i++) {
    // A frame holds the return address, which may belong to the next line or function.
    const void* call = static_cast<const char*>(frames[i]) - 1;
    const void* place = libraryOf(call);
    const bool ours = place == context || place == library;
    if (inside && !ours) return call;
    inside = ours;
  }
  return nullptr;
}

}  // namespace host
