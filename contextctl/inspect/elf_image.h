// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_ELF_IMAGE_H
#define CPP2C_CONTEXTCTL_INSPECT_ELF_IMAGE_H

#include <gelf.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace contextctl {

// An ELF file, read by its segments as the loader does: segments exist even if the sections are stripped.
// Throws Failure if the file is damaged; every access is checked against the end of the file.
class ElfImage {
 public:
  explicit ElfImage(const std::string& path);       // reads the file
  ElfImage(std::string path, std::string content);  // `path` is for messages
  ElfImage(const ElfImage&) = delete;
  ElfImage& operator=(const ElfImage&) = delete;

  const std::string& path() const { return path_; }
  const GElf_Ehdr& header() const { return header_; }
  const std::vector<GElf_Phdr>& segments() const { return segments_; }
  Elf* elf() const { return elf_.get(); }

  const GElf_Phdr* findSegment(std::uint32_t type) const;  // null: none

  std::uint64_t offsetOf(std::uint64_t address) const;  // of the byte that the loader maps at `address`
  std::uint32_t word(std::uint64_t offset) const;       // 32 bits in the file's byte order
  std::string text(std::uint64_t offset) const;         // up to its NUL; the texts may overlap little
  std::string bytes(std::uint64_t offset, std::uint64_t size) const;

  std::vector<GElf_Sym> symbols(std::uint64_t offset, std::uint64_t count) const;

  // `count` records of `type` in the byte order of this machine, for the gelf_ functions.
  Elf_Data* records(std::uint64_t offset, std::uint64_t count, Elf_Type type) const;

  [[noreturn]] void fail(const std::string& reason) const;

 private:
  struct End {
    void operator()(Elf* elf) const { elf_end(elf); }
  };

  void readSegments();
  void requireInside(std::uint64_t offset, std::uint64_t size) const;
  std::uint64_t requireRecords(std::uint64_t offset, std::uint64_t count, Elf_Type type) const;  // their size

  std::string path_;
  std::string content_;
  std::unique_ptr<Elf, End> elf_;
  GElf_Ehdr header_ = {};
  std::vector<GElf_Phdr> segments_;
  mutable std::uint64_t text_read_ = 0;  // bytes that text() has returned
};

}  // namespace contextctl

#endif
