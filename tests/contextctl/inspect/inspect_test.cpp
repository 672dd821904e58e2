// SPDX-License-Identifier: MIT
#include "tests/contextctl/inspect/inspect_test.h"

#include <elf.h>
#include <stddef.h>

#include <filesystem>

#include "contextctl/inspect/elf_image.h"
#include "contextctl/inspect/platform.h"
#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

class InspectTest : public ContextctlTest {
 protected:
  // A copy of a library with one byte of its header changed.
  std::string patched(size_t offset, unsigned char byte) const {
    std::ifstream stream(inspected("plain"));
    std::string content{std::istreambuf_iterator<char>(stream), {}};
    content[offset] = static_cast<char>(byte);
    return folder.write("patched.so", content);
  }
};

TEST_F(InspectTest, TheReportIsPrintedAsATable) {
  const std::string plain = inspected("plain");
  expectOutput({"inspect", plain, "--against", plain},
               plain + ", to fit " + plain +
                   "\n"
                   "VERDICT  SUBJECT      FINDING\n"
                   "ok       machine      " +
                   describe(platformOf(ElfImage(plain))) +
                   "\n"
                   "ok       entry point  getInstance\n"
                   "ok       entry point  relInstance\n"
                   "note     strings      uses no std::string\n"
                   "ok       unloading    nothing keeps it in the process\n"
                   "ok       stack        not executable\n"
                   "\n"
                   "It fits.\n");
}

TEST_F(InspectTest, TheReportIsPrintedAsJson) {
  const std::string bare = inspected("bare");
  expectOutcome(
      run({"inspect", bare, "--against", bare, "--json"}), 1,
      "{\"library\":\"" + bare + "\",\"against\":\"" + bare +
          "\",\"fits\":false,\"findings\":["
          "{\"verdict\":\"ok\",\"subject\":\"machine\",\"text\":\"" +
          describe(platformOf(ElfImage(bare))) +
          "\"},"
          "{\"verdict\":\"no\",\"subject\":\"entry point\",\"text\":\"getInstance is missing\"},"
          "{\"verdict\":\"no\",\"subject\":\"entry point\",\"text\":\"relInstance is missing\"},"
          "{\"verdict\":\"note\",\"subject\":\"strings\",\"text\":\"uses no std::string\"},"
          "{\"verdict\":\"ok\",\"subject\":\"unloading\",\"text\":\"nothing keeps it in the process\"},"
          "{\"verdict\":\"ok\",\"subject\":\"stack\",\"text\":\"not executable\"}],\"slots\":[]}\n",
      "");
}

TEST_F(InspectTest, TheLibraryOfTheSameBuildIsTheDefault) {
  EXPECT_EQ(run({"inspect", CPP2C_RECORDING_CONTEXT}).status, 0);
}

TEST_F(InspectTest, TheRecordingContextFits) {
  EXPECT_TRUE(fits(inspect(optionsFor(CPP2C_RECORDING_CONTEXT))));
}

TEST_F(InspectTest, TheHostContextFits) {
  EXPECT_TRUE(fits(inspect(optionsFor(CPP2C_HOST_CONTEXT))));
}

TEST_F(InspectTest, AModuleFits) {
  EXPECT_TRUE(fits(inspect(optionsFor(inspected("module")))));
}

TEST_F(InspectTest, TheOldHashTableIsRead) {
  EXPECT_EQ(findingsOn("entry point", "sysv"), (Findings{"ok: getInstance", "ok: relInstance"}));
}

TEST_F(InspectTest, AMissingEntryPointDoesNotFit) {
  EXPECT_EQ(findingsOn("entry point", "bare"),
            (Findings{"no: getInstance is missing", "no: relInstance is missing"}));
}

TEST_F(InspectTest, AnUndefinedEntryPointDoesNotFit) {
  EXPECT_EQ(findingsOn("entry point", "undefined"),
            (Findings{"no: getInstance is undefined", "no: relInstance is undefined"}));
}

TEST_F(InspectTest, AnEntryPointThatIsDataDoesNotFit) {
  EXPECT_EQ(findingsOn("entry point", "data"),
            (Findings{"no: getInstance is not a function", "no: relInstance is not a function"}));
}

TEST_F(InspectTest, AnEntryPointWithCppLinkageDoesNotFit) {
  EXPECT_EQ(findingsOn("entry point", "cpp_linkage"),
            (Findings{"no: getInstance has C++ linkage; declare it extern \"C\"", "ok: relInstance"}));
}

TEST_F(InspectTest, AnotherMachineDoesNotFit) {
  EXPECT_EQ(findingsOn("machine", optionsFor(patched(offsetof(Elf64_Ehdr, e_machine), EM_68K))).size(), 1u);
}

TEST_F(InspectTest, EqualStringsFit) {
  const InspectOptions options = optionsFor(inspected("new_strings"));
  EXPECT_EQ(findingsOn("strings", options), Findings{"ok: uses the new std::string"});
}

TEST_F(InspectTest, OldStringsDoNotFit) {
  EXPECT_EQ(findingsOn("strings", "old_strings"),
            Findings{"no: uses the old std::string, from before GCC 5; libcpp2c uses the new std::string"});
}

TEST_F(InspectTest, MixedStringsAreAWarning) {
  EXPECT_EQ(
      findingsOn("strings", "mixed_strings"),
      Findings{"warning: uses both the new and the old std::string; libcpp2c uses the new std::string"});
}

TEST_F(InspectTest, NoStringsAreANote) {
  EXPECT_EQ(findingsOn("strings", "plain"),
            Findings{"note: uses no std::string; libcpp2c uses the new std::string"});
}

TEST_F(InspectTest, AUniqueSymbolIsAWarning) {
  EXPECT_EQ(findingsOn("unloading", "unique"),
            Findings{"warning: stays in the process once loaded because of unique symbols: the_unique_one"});
}

TEST_F(InspectTest, ALibraryMarkedAsNeverUnloadedIsAWarning) {
  EXPECT_EQ(findingsOn("unloading", "nodelete"), Findings{"warning: marked as never to be unloaded"});
}

TEST_F(InspectTest, AnExecutableStackIsAWarning) {
  EXPECT_EQ(findingsOn("stack", "execstack"), Findings{"warning: makes the stack of the process executable"});
}

TEST_F(InspectTest, AWarningStillFits) {
  EXPECT_TRUE(fits(inspect(optionsFor(inspected("execstack")))));
}

TEST_F(InspectTest, AMissingLibraryDoesNotFit) {
  EXPECT_EQ(findingsOn("needs", "needy"),
            Findings{"no: libhelper.so: not found, needed by " + inspected("needy")});
}

TEST_F(InspectTest, ANamedFolderIsSearched) {
  InspectOptions options = optionsFor(inspected("needy"));
  options.library_path = "/nowhere:" CPP2C_INSPECTED "/helper";
  EXPECT_EQ(findingsOn("needs", options),
            Findings{"ok: libhelper.so: " CPP2C_INSPECTED "/helper/libhelper.so"});
}

TEST_F(InspectTest, LdLibraryPathIsSearched) {
  const Outcome outcome = runIn({"LD_LIBRARY_PATH=" CPP2C_INSPECTED "/helper"},
                                {"inspect", inspected("needy"), "--against", CPP2C_LIBRARY});
  EXPECT_EQ(outcome.status, 0);
}

TEST_F(InspectTest, TheRunpathIsSearched) {
  EXPECT_EQ(findingsOn("needs", "runpath"),
            Findings{"ok: libhelper.so: " CPP2C_INSPECTED "/helper/libhelper.so"});
}

TEST_F(InspectTest, TheRpathIsSearched) {
  EXPECT_EQ(findingsOn("needs", "rpath"),
            Findings{"ok: libhelper.so: " CPP2C_INSPECTED "/helper/libhelper.so"});
}

TEST_F(InspectTest, AFileThatIsNotALibraryIsSkipped) {
  folder.write("libhelper.so", "text");
  InspectOptions options = optionsFor(inspected("needy"));
  options.library_path = folder.path();
  EXPECT_EQ(findingsOn("needs", options),
            Findings{"no: libhelper.so: not found, needed by " + inspected("needy") + "; " +
                     folder.file("libhelper.so") + ": not an ELF file"});
}

TEST_F(InspectTest, AnEmptyFileCannotBeRead) {
  const std::string file = folder.write("empty", "");
  expectFailure({"inspect", file}, 3, file + ": the file is empty");
}

TEST_F(InspectTest, ATextFileCannotBeRead) {
  const std::string file = folder.write("text", "#!/bin/sh\n");
  expectFailure({"inspect", file}, 3, file + ": not an ELF file");
}

TEST_F(InspectTest, AFolderCannotBeRead) {
  expectFailure({"inspect", folder.path()}, 3, folder.path() + ": not a regular file");
}

TEST_F(InspectTest, AMissingFileCannotBeRead) {
  expectFailure({"inspect", "/nowhere.so"}, 3, "/nowhere.so: No such file or directory");
}

TEST_F(InspectTest, AProgramIsNotALibrary) {
  expectFailure({"inspect", CPP2C_CONTEXTCTL}, 3, CPP2C_CONTEXTCTL ": a program, not a shared library");
}

TEST_F(InspectTest, AnObjectFileIsNotALibrary) {
  const std::string file = patched(offsetof(Elf64_Ehdr, e_type), ET_REL);
  expectFailure({"inspect", file}, 3, file + ": an ELF file, but not a shared library");
}

TEST_F(InspectTest, AMissingLibraryToFitIsAFailure) {
  expectFailure({"inspect", inspected("plain"), "--against", "/nowhere.so"}, 3,
                "/nowhere.so: No such file or directory");
}

TEST_F(InspectTest, AFileThatIsTooLargeCannotBeRead) {
  const std::string file = folder.write("large", "");
  std::filesystem::resize_file(file, (std::uintmax_t{512} << 20) + 1);
  expectFailure({"inspect", file}, 3, file + ": larger than 512 MiB");
}

TEST_F(InspectTest, AnUnknownKindIsWrongUsage) {
  expectFailure({"inspect", "--kind", "plug-in", inspected("plain")}, 2,
                "--kind: \"plug-in\" is unknown; known: context, module");
}

}  // namespace
}  // namespace contextctl
