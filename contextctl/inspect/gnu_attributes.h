// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_GNU_ATTRIBUTES_H
#define CPP2C_CONTEXTCTL_INSPECT_GNU_ATTRIBUTES_H

#include <cstdint>
#include <optional>

namespace contextctl {

class ElfImage;

// The value of an even tag in the section of GNU build attributes, for the whole file; nullopt if it is
// missing. Throws Failure if the section is damaged.
std::optional<std::uint64_t> gnuAttribute(const ElfImage& image, std::uint64_t tag);

}  // namespace contextctl

#endif
