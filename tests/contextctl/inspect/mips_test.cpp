// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fstream>
#include <iterator>

#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/library.h"
#include "contextctl/system/failure.h"

#include "tests/contextctl/contextctl_test.h"
#include "tests/contextctl/inspect/inspect_test.h"

namespace contextctl {
namespace {

class InspectMipsTest : public ContextctlTest {
 protected:
  static InspectOptions mips(const std::string& name) {
    InspectOptions options = optionsFor(inspected(name));
    options.against = inspected("mips_hard");
    return options;
  }

  // Without the flags segment, as older tools write it.
  static std::string olderSoft() {
    std::ifstream stream(inspected("mips_soft"));
    std::string content{std::istreambuf_iterator<char>(stream), {}};
    const std::string flags_segment("\x70\0\0\x03", 4);
    content.replace(content.find(flags_segment), flags_segment.size(), 4, '\0');
    return content;
  }
};

TEST_F(InspectMipsTest, ALibraryForTheSameMachineFits) {
  EXPECT_EQ(findingsOn("machine", mips("mips_hard")),
            Findings{"ok: 32-bit big-endian MIPS, o32, mips32r2, double-precision hardware floating point"});
}

TEST_F(InspectMipsTest, EntryPointsAreFound) {
  EXPECT_EQ(findingsOn("entry point", mips("mips_hard")), (Findings{"ok: getInstance", "ok: relInstance"}));
}

TEST_F(InspectMipsTest, OtherFloatingPointDoesNotFit) {
  EXPECT_EQ(findingsOn("machine", mips("mips_soft")),
            Findings{"no: software floating point, not double-precision hardware floating point"});
}

TEST_F(InspectMipsTest, FloatingPointIsReadFromBuildAttributes) {
  InspectOptions options = mips("mips_soft");
  options.library = folder.write("older.so", olderSoft());
  EXPECT_EQ(findingsOn("machine", options),
            Findings{"no: software floating point, not double-precision hardware floating point"});
}

TEST_F(InspectMipsTest, AFileWithBuildAttributesAndAnyByteSetIsReadOrRejected) {
  const std::string whole = olderSoft();
  for (size_t i = 0; i < whole.size(); i++) {
    for (const char byte : {'\0', '\x7f', '\xff'}) {
      std::string damaged = whole;
      damaged[i] = byte;
      try {
        readLibrary(ElfImage("damaged.so", damaged));
      } catch (const Failure& failure) {
        EXPECT_EQ(failure.status(), kExitNoAnswer);
      }
    }
  }
}

TEST_F(InspectMipsTest, ALibraryForThisMachineDoesNotFit) {
  EXPECT_FALSE(fits(inspect(mips("plain"))));
}

TEST_F(InspectMipsTest, DependenciesAreNotCheckedOnTheWrongMachine) {
  InspectOptions options = mips("mips_needy");
  options.against = inspected("plain");
  EXPECT_EQ(
      findingsOn("needs", options),
      Findings{"note: libmips.so: not checked; give the root folder of the other machine with --sysroot"});
}

TEST_F(InspectMipsTest, DependenciesAreFoundBelowTheSysroot) {
  std::filesystem::create_directories(folder.file("usr/lib"));
  std::filesystem::copy(inspected("mips_hard"), folder.file("usr/lib/libmips.so"));
  InspectOptions options = optionsFor(inspected("mips_needy"));
  options.against = inspected("mips_needy");
  options.sysroot = folder.path();
  EXPECT_EQ(findingsOn("needs", options), Findings{"ok: libmips.so: " + folder.file("usr/lib/libmips.so")});
}

TEST_F(InspectMipsTest, TheFoldersOfTheLoaderConfigurationAreSearched) {
  std::filesystem::create_directories(folder.file("opt/vendor"));
  std::filesystem::create_directories(folder.file("etc/ld.so.conf.d"));
  std::filesystem::copy(inspected("mips_hard"), folder.file("opt/vendor/libmips.so"));
  folder.write("etc/ld.so.conf", "# folders\ninclude ld.so.conf\ninclude /etc/ld.so.conf.d/*.conf\n");
  folder.write("etc/ld.so.conf.d/vendor.conf", "/opt/vendor # its own\n");
  InspectOptions options = optionsFor(inspected("mips_needy"));
  options.against = inspected("mips_needy");
  options.sysroot = folder.path();
  EXPECT_EQ(findingsOn("needs", options),
            Findings{"ok: libmips.so: " + folder.file("opt/vendor/libmips.so")});
}

TEST_F(InspectMipsTest, ALibraryForAnotherMachineIsSkipped) {
  std::filesystem::create_directories(folder.file("lib"));
  std::filesystem::copy(inspected("plain"), folder.file("lib/libmips.so"));
  InspectOptions options = optionsFor(inspected("mips_needy"));
  options.against = inspected("mips_needy");
  options.sysroot = folder.path();
  EXPECT_EQ(findingsOn("needs", options),
            Findings{"no: libmips.so: not found, needed by " + inspected("mips_needy") + "; " +
                     folder.file("lib/libmips.so") + " is for another machine"});
}

TEST_F(InspectMipsTest, ALoadedLibraryIsNotSearched) {
  InspectOptions options = mips("mips_needy");
  options.sysroot = folder.path();
  EXPECT_EQ(findingsOn("needs", options), Findings{"ok: libmips.so: " + inspected("mips_hard")});
}

TEST_F(InspectMipsTest, LiveNeedsALibraryForThisMachine) {
  expectFailure({"inspect", "--live", inspected("mips_hard")}, 2,
                "--live needs a library for this machine: " + inspected("mips_hard") +
                    " is 32-bit big-endian MIPS, o32, mips32r2, double-precision hardware floating point");
}

}  // namespace
}  // namespace contextctl
