// SPDX-License-Identifier: MIT
#include "contextctl/inspect/elf_image.h"

#include <utility>

#include "contextctl/system/failure.h"
#include "contextctl/system/files.h"

namespace contextctl {
namespace {

constexpr size_t kLargestFile = 512;  // in MiB

}  // namespace

ElfImage::ElfImage(const std::string& path) : ElfImage(path, readFile(path, kLargestFile)) {}

ElfImage::ElfImage(std::string path, std::string content)
    : path_(std::move(path)), content_(std::move(content)) {
  elf_version(EV_CURRENT);
  elf_.reset(elf_memory(content_.data(), content_.size()));
  if (content_.empty()) fail("the file is empty");
  if (elf_ == nullptr || elf_kind(elf_.get()) != ELF_K_ELF) fail("not an ELF file");
  if (gelf_getehdr(elf_.get(), &header_) == nullptr) fail("the ELF header is damaged");
  readSegments();
}

void ElfImage::readSegments() {
  size_t count = 0;
  if (elf_getphdrnum(elf_.get(), &count) != 0) fail("the program headers are damaged");
  requireRecords(header_.e_phoff, count, ELF_T_PHDR);
  for (size_t i = 0; i < count; i++) {
    GElf_Phdr segment;
    if (gelf_getphdr(elf_.get(), static_cast<int>(i), &segment) == nullptr)
      fail("the program headers are damaged");
    segments_.push_back(segment);
  }
}

const GElf_Phdr* ElfImage::findSegment(std::uint32_t type) const {
  for (const GElf_Phdr& segment : segments_)
    if (segment.p_type == type) return &segment;
  return nullptr;
}

std::uint64_t ElfImage::offsetOf(std::uint64_t address) const {
  for (const GElf_Phdr& segment : segments_) {
    const bool holds = segment.p_type == PT_LOAD && address >= segment.p_vaddr &&
                       address - segment.p_vaddr < segment.p_filesz;
    if (holds) return segment.p_offset + (address - segment.p_vaddr);
  }
  fail("an address lies outside all segments");
}

std::uint32_t ElfImage::word(std::uint64_t offset) const {
  requireInside(offset, 4);
  const bool little = header_.e_ident[EI_DATA] == ELFDATA2LSB;
  std::uint32_t value = 0;
  for (std::uint64_t i = 0; i < 4; i++) {
    const auto byte = static_cast<unsigned char>(content_[offset + (little ? 3 - i : i)]);
    value = value << 8 | byte;
  }
  return value;
}

std::string ElfImage::text(std::uint64_t offset) const {
  requireInside(offset, 1);
  const size_t end = content_.find('\0', offset);
  if (end == std::string::npos) fail("a name is not terminated");
  // Many symbols with one long name would take the square of the size of the file.
  constexpr std::uint64_t kMostReads = 4;
  text_read_ += end - offset;
  if (text_read_ / kMostReads > content_.size()) fail("the names overlap each other too much");
  return content_.substr(offset, end - offset);
}

std::string ElfImage::bytes(std::uint64_t offset, std::uint64_t size) const {
  requireInside(offset, size);
  return content_.substr(offset, size);
}

Elf_Data* ElfImage::records(std::uint64_t offset, std::uint64_t count, Elf_Type type) const {
  const std::uint64_t size = requireRecords(offset, count, type);
  Elf_Data* data = elf_getdata_rawchunk(elf_.get(), static_cast<std::int64_t>(offset), size, type);
  if (data == nullptr) fail(elf_errmsg(-1));
  return data;
}

std::vector<GElf_Sym> ElfImage::symbols(std::uint64_t offset, std::uint64_t count) const {
  std::vector<GElf_Sym> found;
  if (count == 0) return found;
  Elf_Data* data = records(offset, count, ELF_T_SYM);
  for (std::uint64_t i = 0; i < count; i++) {
    GElf_Sym symbol;
    if (gelf_getsym(data, static_cast<int>(i), &symbol) != nullptr) found.push_back(symbol);
  }
  return found;
}

std::uint64_t ElfImage::requireRecords(std::uint64_t offset, std::uint64_t count, Elf_Type type) const {
  const std::uint64_t one = gelf_fsize(elf_.get(), type, 1, EV_CURRENT);
  requireInside(offset, count > content_.size() / one ? content_.size() + 1 : count * one);
  return count * one;
}

void ElfImage::requireInside(std::uint64_t offset, std::uint64_t size) const {
  if (size > content_.size() || offset > content_.size() - size) fail("the file is truncated or damaged");
}

void ElfImage::fail(const std::string& reason) const {
  throw Failure(kExitNoAnswer, path_ + ": " + reason);
}

}  // namespace contextctl
