// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_CODE_PLACE_H
#define CPP2C_CONTEXTCTL_INSPECT_CODE_PLACE_H

#include <cstdint>
#include <optional>
#include <string>

namespace contextctl {

// Where an address of this process lies in the file that it was loaded from.
struct CodePlace {
  std::string file;
  std::uint64_t address;  // as the file counts
};

// Nothing if there is no executable code of a loaded file at the address.
std::optional<CodePlace> findCode(const void* address);

}  // namespace contextctl

#endif
