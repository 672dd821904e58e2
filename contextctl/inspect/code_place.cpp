// SPDX-License-Identifier: MIT
#include "contextctl/inspect/code_place.h"

#include <link.h>

namespace contextctl {
namespace {

struct Search {
  std::uintptr_t address;
  std::optional<CodePlace> found;
};

int lookInto(dl_phdr_info* object, size_t, void* user) {
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

}  // namespace

std::optional<CodePlace> findCode(const void* address) {
  Search search{reinterpret_cast<std::uintptr_t>(address), std::nullopt};
  dl_iterate_phdr(lookInto, &search);
  return search.found;
}

}  // namespace contextctl
