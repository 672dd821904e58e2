// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_DYNAMIC_SECTION_H
#define CPP2C_CONTEXTCTL_INSPECT_DYNAMIC_SECTION_H

#include <gelf.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace contextctl {

class ElfImage;

// The information of a file for the dynamic loader. Throws Failure if it is damaged.
class DynamicSection {
 public:
  explicit DynamicSection(const ElfImage& image);  // `image` must outlive it

  std::optional<std::uint64_t> value(std::int64_t tag) const;  // of the first entry
  std::vector<std::uint64_t> values(std::int64_t tag) const;   // of all entries, in order
  std::string name(std::uint64_t offset) const;                // from the string table
  std::vector<GElf_Sym> symbols() const;

 private:
  std::uint64_t symbolCount() const;
  std::uint64_t countByGnuHash(std::uint64_t offset) const;

  const ElfImage& image_;
  std::vector<GElf_Dyn> entries_;
  std::optional<std::uint64_t> names_;  // offset of the string table in the file
  std::uint64_t names_size_ = 0;
};

}  // namespace contextctl

#endif
