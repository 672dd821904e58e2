// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_GNU_ATTRIBUTES_H
#define CPP2C_CONTEXTCTL_INSPECT_GNU_ATTRIBUTES_H

#include <cstdint>
#include <optional>

namespace contextctl {

class ElfImage;

// The number that the section of GNU build attributes gives to an even tag for the whole file; nothing if it
// does not stand there. Throws Failure if the section is damaged.
std::optional<std::uint64_t> gnuAttribute(const ElfImage& image, std::uint64_t tag);

}  // namespace contextctl

#endif
