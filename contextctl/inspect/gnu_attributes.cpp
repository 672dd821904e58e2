// SPDX-License-Identifier: MIT
#include "contextctl/inspect/gnu_attributes.h"

#include <string>

#include "contextctl/inspect/elf_image.h"

namespace contextctl {
namespace {

// Reads consecutive values from a place in the file.
class Reader {
 public:
  Reader(const ElfImage& image, std::uint64_t at) : image_(image), at_(at) {}

  std::uint64_t at() const { return at_; }
  std::uint64_t number();  // seven bits per byte, lowest first
  std::string text();

  // The end of the block at `begin`, whose size is read here.
  std::uint64_t endOfBlock(std::uint64_t begin);

 private:
  const ElfImage& image_;
  std::uint64_t at_;
};

std::uint64_t Reader::number() {
  std::uint64_t value = 0;
  for (unsigned shift = 0; shift < 64; shift += 7) {
    const auto byte = static_cast<unsigned char>(image_.bytes(at_++, 1)[0]);
    value |= std::uint64_t{byte & 0x7fu} << shift;
    if ((byte & 0x80) == 0) return value;
  }
  image_.fail("the build attributes are damaged");
}

std::string Reader::text() {
  std::string text = image_.text(at_);
  at_ += text.size() + 1;
  return text;
}

std::uint64_t Reader::endOfBlock(std::uint64_t begin) {
  const std::uint64_t end = begin + image_.word(at_);
  at_ += 4;
  if (end < at_) image_.fail("the build attributes are damaged");
  return end;
}

// Even tags have numbers, odd tags strings.
std::optional<std::uint64_t> findInList(Reader reader, std::uint64_t end, std::uint64_t wanted) {
  while (reader.at() < end) {
    const std::uint64_t tag = reader.number();
    if (tag % 2 != 0) {
      reader.text();
      continue;
    }
    const std::uint64_t value = reader.number();
    if (tag == wanted) return value;
  }
  return std::nullopt;
}

// Searches the lists of one vendor for the one of the whole file.
std::optional<std::uint64_t> findInBlock(const ElfImage& image, std::uint64_t begin, std::uint64_t end,
                                         std::uint64_t wanted) {
  constexpr std::uint64_t kWholeFile = 1;
  while (begin < end) {
    Reader reader(image, begin);
    const std::uint64_t scope = reader.number();
    const std::uint64_t list_end = reader.endOfBlock(begin);
    if (scope == kWholeFile) return findInList(reader, list_end, wanted);
    begin = list_end;
  }
  return std::nullopt;
}

std::optional<std::uint64_t> findInSection(const ElfImage& image, std::uint64_t begin, std::uint64_t end,
                                           std::uint64_t wanted) {
  if (begin >= end || image.bytes(begin, 1) != "A") return std::nullopt;
  for (begin++; begin < end;) {
    Reader reader(image, begin);
    const std::uint64_t block_end = reader.endOfBlock(begin);
    if (reader.text() == "gnu") return findInBlock(image, reader.at(), block_end, wanted);
    begin = block_end;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::uint64_t> gnuAttribute(const ElfImage& image, std::uint64_t tag) {
  Elf_Scn* section = nullptr;
  while ((section = elf_nextscn(image.elf(), section)) != nullptr) {
    GElf_Shdr header;
    if (gelf_getshdr(section, &header) == nullptr || header.sh_type != SHT_GNU_ATTRIBUTES) continue;
    return findInSection(image, header.sh_offset, header.sh_offset + header.sh_size, tag);
  }
  return std::nullopt;
}

}  // namespace contextctl
