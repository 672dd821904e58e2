// SPDX-License-Identifier: MIT
// The work for a file is limited by its size, whatever its numbers say.
#include <string>

#include "tests/contextctl/contextctl_test.h"
#include "tests/contextctl/inspect/elf_file.h"
#include "tests/contextctl/inspect/inspect_test.h"

namespace contextctl {
namespace {

class InspectHostileTest : public ContextctlTest {
 protected:
  std::string write(const ElfFile& file) const { return folder.write("hostile.so", file.content()); }

  void expectRejected(const ElfFile& file, const std::string& reason) {
    const std::string path = write(file);
    expectFailure({"inspect", path, "--against", path}, 3, path + ": " + reason);
  }

  Outcome inspectItself(const ElfFile& file) {
    const std::string path = write(file);
    return run({"inspect", path, "--against", path});
  }
};

// A name of some hundred bytes that stands for gigabytes: each type contains the previous one twice.
std::string exponentialName() {
  static constexpr char kDigits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  std::string name = "_Z1f1a1bIS_S_E";
  for (int i = 1; i < 34; i++) {
    const std::string previous = std::string("S") + kDigits[i] + '_';
    name += "S0_I" + previous + previous + 'E';
  }
  return name;
}

TEST_F(InspectHostileTest, ASmallLibraryIsRead) {
  ElfFile file;
  file.addSymbol("getInstance");
  file.addSymbol("relInstance");
  EXPECT_EQ(findingsOn("entry point", optionsFor(write(file))),
            (Findings{"ok: getInstance", "ok: relInstance"}));
}

TEST_F(InspectHostileTest, ACountOfSymbolsWhoseSizeWrapsIsRejected) {
  ElfFile file;
  file.machine = EM_MIPS;
  file.big_endian = true;
  file.addSymbol("f");
  file.symbol_count = 0xaaaaaaaaaaaaaab;  // times 24 bytes: 8
  expectRejected(file, "the file is truncated or damaged");
}

TEST_F(InspectHostileTest, ASizeOfTheDynamicSectionBeyondTheFileIsRejected) {
  ElfFile file;
  file.segments.push_back({PT_NULL, ""});
  std::string content = file.content();
  content.replace(64 + 56 + 32, 8, std::string(7, '\xff') + '\x7f');  // p_filesz of the second segment
  const std::string path = folder.write("hostile.so", content);
  expectFailure({"inspect", path, "--against", path}, 3, path + ": the file is truncated or damaged");
}

TEST_F(InspectHostileTest, SymbolsThatShareALongNameAreRejected) {
  ElfFile file;
  const std::uint64_t name = file.addName(std::string(20000, 'x'));
  file.symbols.assign(1000, {name});
  expectRejected(file, "the names overlap each other too much");
}

TEST_F(InspectHostileTest, SymbolsThatShareTheEndsOfALongNameAreRejected) {
  ElfFile file;
  const std::uint64_t name = file.addName(std::string(20000, 'x'));
  for (std::uint64_t i = 0; i < 1000; i++) file.symbols.push_back({name + i});
  expectRejected(file, "the names overlap each other too much");
}

TEST_F(InspectHostileTest, SymbolsMayShareShortNames) {
  ElfFile file;
  file.symbols.assign(1000, {file.addName("getInstance")});
  EXPECT_EQ(findingsOn("entry point", optionsFor(write(file)))[0], "ok: getInstance");
}

TEST_F(InspectHostileTest, LibrariesThatShareALongNameAreRejected) {
  ElfFile file;
  const std::uint64_t name = file.addName(std::string(20000, 'x'));
  file.tags.assign(900, {DT_NEEDED, name});
  expectRejected(file, "the names overlap each other too much");
}

TEST_F(InspectHostileTest, TooManyLibrariesAreRejected) {
  ElfFile file;
  const std::uint64_t name = file.addName("lib.so");
  file.tags.assign(1001, {DT_NEEDED, name});
  expectRejected(file, "it needs more than 1000 libraries");
}

TEST_F(InspectHostileTest, TooManyFoldersAreRejected) {
  ElfFile file;
  std::string folders;
  for (int i = 0; i < 1000; i++) folders += "x:";
  file.tags = {{DT_RUNPATH, file.addName(folders)}, {DT_NEEDED, file.addName("lib.so")}};
  expectRejected(file, "it searches more than 1000 folders");
}

TEST_F(InspectHostileTest, AnExponentialNameOfAUniqueSymbolIsNotDemangled) {
  ElfFile file;
  const std::string name = exponentialName();
  file.symbols = {{file.addName(name), ELF64_ST_INFO(STB_GNU_UNIQUE, STT_OBJECT)}};
  EXPECT_EQ(findingsOn("unloading", optionsFor(write(file))),
            Findings{"warning: stays in the process once loaded because of unique symbols: " + name});
}

TEST_F(InspectHostileTest, AnExponentialNameOfAFunctionIsNotDemangled) {
  ElfFile file;
  file.addSymbol(exponentialName());
  EXPECT_EQ(inspectItself(file).status, 1);
}

TEST_F(InspectHostileTest, ManyUniqueSymbolsAreNotAllListed) {
  ElfFile file;
  for (const char* name : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"})
    file.symbols.push_back({file.addName(name), ELF64_ST_INFO(STB_GNU_UNIQUE, STT_OBJECT)});
  EXPECT_EQ(
      findingsOn("unloading", optionsFor(write(file))),
      Findings{"warning: stays in the process once loaded because of unique symbols: a, b, c, d, e, f, g, h "
               "and 2 more"});
}

}  // namespace
}  // namespace contextctl
