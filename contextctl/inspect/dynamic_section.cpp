// SPDX-License-Identifier: MIT
#include "contextctl/inspect/dynamic_section.h"

#include <algorithm>

#include "contextctl/inspect/elf_image.h"

namespace contextctl {

DynamicSection::DynamicSection(const ElfImage& image) : image_(image) {
  const GElf_Phdr* segment = image.findSegment(PT_DYNAMIC);
  if (segment == nullptr) image.fail("not linked dynamically");
  const std::uint64_t count = segment->p_filesz / gelf_fsize(image.elf(), ELF_T_DYN, 1, EV_CURRENT);
  Elf_Data* data = image.records(segment->p_offset, count, ELF_T_DYN);
  for (std::uint64_t i = 0; i < count; i++) {
    GElf_Dyn entry;
    if (gelf_getdyn(data, static_cast<int>(i), &entry) == nullptr || entry.d_tag == DT_NULL) break;
    entries_.push_back(entry);
  }
  if (const auto names = value(DT_STRTAB)) names_ = image_.offsetOf(*names);
  names_size_ = value(DT_STRSZ).value_or(0);
}

std::optional<std::uint64_t> DynamicSection::value(std::int64_t tag) const {
  for (const GElf_Dyn& entry : entries_)
    if (entry.d_tag == tag) return entry.d_un.d_val;
  return std::nullopt;
}

std::vector<std::uint64_t> DynamicSection::values(std::int64_t tag) const {
  std::vector<std::uint64_t> found;
  for (const GElf_Dyn& entry : entries_)
    if (entry.d_tag == tag) found.push_back(entry.d_un.d_val);
  return found;
}

std::string DynamicSection::name(std::uint64_t offset) const {
  if (!names_ || offset >= names_size_) image_.fail("a name lies outside the string table");
  return image_.text(*names_ + offset);
}

std::vector<GElf_Sym> DynamicSection::symbols() const {
  const std::optional<std::uint64_t> table = value(DT_SYMTAB);
  const std::uint64_t count = symbolCount();
  if (!table || count == 0) return {};
  return image_.symbols(image_.offsetOf(*table), count);
}

// The symbol table has no length of its own; the hash table that the loader uses has.
std::uint64_t DynamicSection::symbolCount() const {
  if (image_.header().e_machine == EM_MIPS) return value(DT_MIPS_SYMTABNO).value_or(0);
  if (const auto hash = value(DT_GNU_HASH)) return countByGnuHash(image_.offsetOf(*hash));
  if (const auto hash = value(DT_HASH)) return image_.word(image_.offsetOf(*hash) + 4);
  return 0;
}

// The last symbol is at the end of the last chain. An odd word ends a chain.
std::uint64_t DynamicSection::countByGnuHash(std::uint64_t offset) const {
  const std::uint64_t bucket_count = image_.word(offset), first = image_.word(offset + 4);
  const std::uint64_t filter_size = image_.word(offset + 8);
  const std::uint64_t filter_word = image_.header().e_ident[EI_CLASS] == ELFCLASS64 ? 8 : 4;
  const std::uint64_t buckets = offset + 16 + filter_size * filter_word;
  const std::uint64_t chains = buckets + bucket_count * 4;

  std::uint64_t last = 0;
  for (std::uint64_t i = 0; i < bucket_count; i++)
    last = std::max<std::uint64_t>(last, image_.word(buckets + i * 4));
  if (last < first) return first;
  while ((image_.word(chains + (last - first) * 4) & 1) == 0) last++;
  return last + 1;
}

}  // namespace contextctl
