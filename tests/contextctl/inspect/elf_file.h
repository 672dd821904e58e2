// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_CONTEXTCTL_INSPECT_ELF_FILE_H
#define CPP2C_TESTS_CONTEXTCTL_INSPECT_ELF_FILE_H

#include <elf.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace contextctl {

// A small shared library, made up from its parts, which need not fit together. All of the file is mapped at
// address 0.
class ElfFile {
 public:
  struct Symbol {
    std::uint64_t name;  // offset
    unsigned char info = ELF64_ST_INFO(STB_GLOBAL, STT_FUNC);
    std::uint16_t section = 1;
  };

  bool is64 = true;
  bool big_endian = false;
  std::uint16_t machine = EM_X86_64;
  std::uint32_t flags = 0;
  std::vector<std::pair<std::uint64_t, std::uint64_t>> tags;  // further entries of the dynamic section
  std::vector<Symbol> symbols;
  std::optional<std::uint64_t> symbol_count;                    // if it is not the number of `symbols`
  std::vector<std::pair<std::uint32_t, std::string>> segments;  // further segments: type and bytes
  std::vector<std::pair<std::uint32_t, std::string>> sections;  // type and bytes

  // Returns the offset of the name in the string table.
  std::uint64_t addName(const std::string& name) {
    names_ += name + '\0';
    return names_.size() - name.size() - 1;
  }
  void addSymbol(const std::string& name) { symbols.push_back({addName(name)}); }

  std::string content() const {
    const std::size_t header = is64 ? 64 : 52, segment = is64 ? 56 : 32, section = is64 ? 64 : 40;
    const std::size_t segments_end = header + segment * (2 + segments.size());
    const std::string symbol_table = symbolTable();
    const std::uint64_t count = symbol_count.value_or(symbols.size());
    const std::string hash = number(1, 4) + number(count, 4);
    const std::size_t word = is64 ? 8 : 4;

    const std::size_t names_at = segments_end, symbols_at = names_at + names_.size();
    const std::size_t hash_at = symbols_at + symbol_table.size(), dynamic_at = hash_at + hash.size();
    auto all = tags;
    all.insert(all.begin(), {{DT_STRTAB, names_at}, {DT_STRSZ, names_.size()}, {DT_SYMTAB, symbols_at}});
    all.insert(all.begin(), machine == EM_MIPS
                                ? std::pair<std::uint64_t, std::uint64_t>{DT_MIPS_SYMTABNO, count}
                                : std::pair<std::uint64_t, std::uint64_t>{DT_HASH, hash_at});
    std::string dynamic;
    for (const auto& [tag, value] : all) dynamic += number(tag, word) + number(value, word);
    dynamic += number(DT_NULL, word) + number(0, word);

    std::string body = names_ + symbol_table + hash + dynamic, table;
    for (const auto& [type, bytes] : segments) {
      table += segmentHeader(type, segments_end + body.size(), bytes.size());
      body += bytes;
    }
    std::string section_table = sections.empty() ? "" : std::string(section, '\0');
    for (const auto& [type, bytes] : sections) {
      section_table += sectionHeader(type, segments_end + body.size(), bytes.size());
      body += bytes;
    }
    const std::size_t sections_at = segments_end + body.size();
    body += section_table;
    table = segmentHeader(PT_LOAD, 0, segments_end + body.size()) +
            segmentHeader(PT_DYNAMIC, dynamic_at, dynamic.size()) + table;
    return fileHeader(sections.empty() ? 0 : sections_at) + table + body;
  }

 private:
  std::string number(std::uint64_t value, std::size_t size) const {
    std::string bytes;
    for (std::size_t i = 0; i < size; i++)
      bytes += static_cast<char>(value >> 8 * (big_endian ? size - 1 - i : i) & 0xff);
    return bytes;
  }

  std::string fileHeader(std::size_t sections_at) const {
    const std::size_t word = is64 ? 8 : 4, header = is64 ? 64 : 52;
    std::string identity =
        "\x7f"
        "ELF";
    identity += {is64 ? '\2' : '\1', big_endian ? '\2' : '\1', '\1'};
    identity.resize(16);
    return identity + number(ET_DYN, 2) + number(machine, 2) + number(1, 4) + number(0, word) +
           number(header, word) + number(sections_at, word) + number(flags, 4) + number(header, 2) +
           number(is64 ? 56 : 32, 2) + number(2 + segments.size(), 2) + number(is64 ? 64 : 40, 2) +
           number(sections.empty() ? 0 : sections.size() + 1, 2) + number(0, 2);
  }

  std::string segmentHeader(std::uint32_t type, std::size_t at, std::size_t size) const {
    const std::size_t word = is64 ? 8 : 4;
    const std::string access = number(PF_R, 4);
    return number(type, 4) + (is64 ? access : "") + number(at, word) + number(at, word) + number(at, word) +
           number(size, word) + number(size, word) + (is64 ? "" : access) + number(1, word);
  }

  std::string sectionHeader(std::uint32_t type, std::size_t at, std::size_t size) const {
    const std::size_t word = is64 ? 8 : 4;
    return number(0, 4) + number(type, 4) + number(0, word) + number(0, word) + number(at, word) +
           number(size, word) + number(0, 4) + number(0, 4) + number(1, word) + number(0, word);
  }

  std::string symbolTable() const {
    std::string table;
    for (const Symbol& symbol : symbols) {
      const std::string kind = std::string{static_cast<char>(symbol.info), '\0'} + number(symbol.section, 2);
      table += number(symbol.name, 4) +
               (is64 ? kind + number(0, 8) + number(0, 8) : number(0, 4) + number(0, 4) + kind);
    }
    return table;
  }

  std::string names_ = std::string(1, '\0');
};

}  // namespace contextctl

#endif
