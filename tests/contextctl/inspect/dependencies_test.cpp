// SPDX-License-Identifier: MIT
// Libraries are searched where the loader searches them, and in its order.
#include <filesystem>

#include "tests/contextctl/contextctl_test.h"
#include "tests/contextctl/inspect/elf_file.h"
#include "tests/contextctl/inspect/inspect_test.h"

namespace contextctl {
namespace {

class DependenciesTest : public ContextctlTest {
 protected:
  void SetUp() override {
    for (const char* name : {"rpath", "named", "runpath", "lib"}) {
      std::filesystem::create_directory(folder.file(name));
      folder.write(std::string(name) + "/needed.so", ElfFile().content());
    }
  }

  void remove(const std::string& name) const { std::filesystem::remove(folder.file(name + "/needed.so")); }

  // A library with a run path that needs "needed.so".
  static std::string needy(std::uint64_t tag, const std::string& path,
                           const std::string& needed = "needed.so") {
    ElfFile file;
    file.tags = {{tag, file.addName(path)}, {DT_NEEDED, file.addName(needed)}};
    return file.content();
  }

  Findings findings(const std::string& library) const {
    InspectOptions options;
    options.library = options.against = library;
    options.library_path = folder.file("named");
    options.sysroot = folder.path();
    return findingsOn("needs", options);
  }

  Findings found(const std::string& name) const {
    return {"ok: needed.so: " + folder.file(name + "/needed.so")};
  }
};

TEST_F(DependenciesTest, TheRpathPrecedesNamedFolders) {
  const std::string library = folder.write("x.so", needy(DT_RPATH, "$ORIGIN/rpath"));
  EXPECT_EQ(findings(library), found("rpath"));
  remove("rpath");
  EXPECT_EQ(findings(library), found("named"));
  remove("named");
  EXPECT_EQ(findings(library), found("lib"));
}

TEST_F(DependenciesTest, TheRunpathFollowsNamedFolders) {
  const std::string library = folder.write("x.so", needy(DT_RUNPATH, "${ORIGIN}/runpath"));
  EXPECT_EQ(findings(library), found("named"));
  remove("named");
  EXPECT_EQ(findings(library), found("runpath"));
  remove("runpath");
  EXPECT_EQ(findings(library), found("lib"));
}

TEST_F(DependenciesTest, FoldersOfIncludedLoaderConfigurationsAreSearched) {
  for (const char* name : {"etc", "etc/conf.d", "relative", "absolute"}) {
    std::filesystem::create_directory(folder.file(name));
  }
  folder.write("etc/ld.so.conf", "include conf.d/*.conf\ninclude /etc/absolute\n");
  folder.write("etc/conf.d/x.conf", "/relative\n");
  folder.write("etc/absolute", "/absolute\n");
  const std::string library = folder.write("x.so", needy(DT_RUNPATH, "/nowhere", "listed.so"));
  for (const std::string name : {"relative", "absolute"}) {
    const std::string listed = folder.write(name + "/listed.so", ElfFile().content());
    EXPECT_EQ(findings(library), Findings{"ok: listed.so: " + listed});
    std::filesystem::remove(listed);
  }
}

TEST_F(DependenciesTest, EntriesAfterTheEndOfTheDynamicSectionAreIgnored) {
  ElfFile file;
  file.tags = {
      {DT_NEEDED, file.addName("needed.so")}, {DT_NULL, 0}, {DT_NEEDED, file.addName("no-such-library.so")}};
  const std::string library = folder.write("x.so", file.content());
  EXPECT_EQ(findings(library), found("named"));
}

TEST_F(DependenciesTest, ARunpathDisablesTheRpath) {
  ElfFile file;
  file.tags = {{DT_RPATH, file.addName("$ORIGIN/rpath")},
               {DT_RUNPATH, file.addName("$ORIGIN/runpath")},
               {DT_NEEDED, file.addName("needed.so")}};
  const std::string library = folder.write("x.so", file.content());
  remove("named");
  EXPECT_EQ(findings(library), found("runpath"));
}

TEST_F(DependenciesTest, APathWithoutOriginIsBelowTheRoot) {
  EXPECT_EQ(findings(folder.write("x.so", needy(DT_RPATH, "/rpath"))), found("rpath"));
}

TEST_F(DependenciesTest, TheRpathAlsoAppliesToIndirectDependencies) {
  folder.write("named/middle.so", needy(DT_NULL + 0x6ffffef0, ""));
  remove("named");
  const std::string library = folder.write("x.so", needy(DT_RPATH, "$ORIGIN/rpath", "middle.so"));
  EXPECT_EQ(findings(library), (Findings{"ok: needed.so: " + folder.file("rpath/needed.so"),
                                         "ok: middle.so: " + folder.file("named/middle.so")}));
}

TEST_F(DependenciesTest, TheRunpathDoesNotApplyToIndirectDependencies) {
  folder.write("runpath/middle.so", needy(DT_NULL + 0x6ffffef0, ""));
  remove("named");
  const std::string library = folder.write("x.so", needy(DT_RUNPATH, "$ORIGIN/runpath", "middle.so"));
  EXPECT_EQ(findings(library), (Findings{"ok: needed.so: " + folder.file("lib/needed.so"),
                                         "ok: middle.so: " + folder.file("runpath/middle.so")}));
}

TEST_F(DependenciesTest, ANameWithASlashIsAPath) {
  EXPECT_EQ(findings(folder.write("x.so", needy(DT_RPATH, "$ORIGIN/rpath", "/lib/needed.so"))),
            Findings{"ok: /lib/needed.so: " + folder.file("lib/needed.so")});
}

TEST_F(DependenciesTest, AMissingLibraryIsReportedWithTheLibraryThatNeedsIt) {
  folder.write("named/middle.so", needy(DT_RPATH, "", "missing.so"));
  const std::string library = folder.write("x.so", needy(DT_RPATH, "", "middle.so"));
  EXPECT_EQ(findings(library),
            (Findings{"no: missing.so: not found, needed by " + folder.file("named/middle.so"),
                      "ok: middle.so: " + folder.file("named/middle.so")}));
}

TEST_F(DependenciesTest, LibrariesThatNeedEachOtherAreFoundOnce) {
  folder.write("named/a.so", needy(DT_RPATH, "", "b.so"));
  folder.write("named/b.so", needy(DT_RPATH, "", "a.so"));
  EXPECT_EQ(findings(folder.file("named/a.so")),
            (Findings{"ok: a.so: " + folder.file("named/a.so"), "ok: b.so: " + folder.file("named/b.so")}));
}

}  // namespace
}  // namespace contextctl
