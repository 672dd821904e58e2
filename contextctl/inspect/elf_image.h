// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_INSPECT_ELF_IMAGE_H
#define CPP2C_CONTEXTCTL_INSPECT_ELF_IMAGE_H

#include <gelf.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace contextctl {

// One ELF file, read as the loader reads it: by its segments, which are there even when the sections have
// been stripped. Every access is checked against the file's end; a damaged file makes it throw Failure.
class ElfImage {
 public:
  explicit ElfImage(const std::string& path);       // reads the file
  ElfImage(std::string path, std::string content);  // `path` names it in messages
  ElfImage(const ElfImage&) = delete;
  ElfImage& operator=(const ElfImage&) = delete;

  const std::string& path() const { return path_; }
  const GElf_Ehdr& header() const { return header_; }
  const std::vector<GElf_Phdr>& segments() const { return segments_; }
  Elf* elf() const { return elf_.get(); }

  const GElf_Phdr* findSegment(std::uint32_t type) const;  // null: there is none

  std::uint64_t offsetOf(std::uint64_t address) const;  // of a byte that the loader maps at `address`
  std::uint32_t word(std::uint64_t offset) const;       // 32 bits in the file's byte order
  std::string text(std::uint64_t offset) const;         // up to its NUL
  std::string bytes(std::uint64_t offset, std::uint64_t size) const;

  // `count` records of `type`, translated into this machine's form, for the gelf_ functions.
  Elf_Data* records(std::uint64_t offset, std::uint64_t count, Elf_Type type) const;

  [[noreturn]] void fail(const std::string& reason) const;

 private:
  struct End {
    void operator()(Elf* elf) const { elf_end(elf); }
  };

  void readSegments();
  void requireInside(std::uint64_t offset, std::uint64_t size) const;

  std::string path_;
  std::string content_;
  std::unique_ptr<Elf, End> elf_;
  GElf_Ehdr header_ = {};
  std::vector<GElf_Phdr> segments_;
};

}  // namespace contextctl

#endif
