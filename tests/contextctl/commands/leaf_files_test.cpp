// SPDX-License-Identifier: MIT
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "tests/contextctl/contextctl_test.h"

namespace contextctl {
namespace {

class LeafFilesTest : public ContextctlTest {
 protected:
  // `password` is a JSON value.
  static std::string tree(const std::string& password) {
    return R"({"leaves":[{"name":"Host","type":"str","value":"router","computed":false},)"
           R"({"name":"Key","type":"pwd","value":)" +
           password +
           R"(,"computed":false},{"name":"Mtu","type":"uint","value":"1500","computed":false},)"
           R"({"name":"Up","type":"bool","value":"1","computed":true}]})";
  }

  void SetUp() override {
    context.answer("GET /tree", tree("null"));
    context.answer("GET /tree?reveal=true", tree("\"secret\""));
    context.answer("PUT /leaf", kDone);
  }

  // Runs the command with a file that exists, which it cannot write: no file may have a byte.
  void expectUnchangedWithoutSpace(const std::string& command) {
    const std::string path = file("old");
    const std::string script = "ulimit -f 0; trap '' XFSZ; exec " CPP2C_CONTEXTCTL " " + command + " " + path;
    const Outcome outcome =
        runProgram(context.base(), {"sh", "-c", script}, {"CPP2C_CONTROL=" + socket}, nullptr);
    EXPECT_EQ(outcome.err, "contextctl: " + path + ": File too large\n");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(folder.read("leaves.json"), "old");
    EXPECT_EQ(files(), (std::set<std::string>{"control.sock", "leaves.json"}));
  }

  std::set<std::string> files() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
      names.insert(entry.path().filename());
    return names;
  }

  std::string file(const std::string& text) const { return folder.write("leaves.json", text); }
};

TEST_F(LeafFilesTest, ExportLeavesOutPasswordsAndComputedValues) {
  expectOutput({"export"},
               "{\n"
               "  \"Host\": {\n"
               "    \"type\": \"str\",\n"
               "    \"value\": \"router\"\n"
               "  },\n"
               "  \"Mtu\": {\n"
               "    \"type\": \"uint\",\n"
               "    \"value\": \"1500\"\n"
               "  }\n"
               "}\n");
}

TEST_F(LeafFilesTest, ExportIncludesPasswordsWithReveal) {
  EXPECT_NE(run({"export", "--reveal"}).out.find("\"value\": \"secret\""), std::string::npos);
}

TEST_F(LeafFilesTest, ExportWritesAFile) {
  expectOutput({"export", "", folder.file("all.json")}, "");
  EXPECT_EQ(folder.read("all.json"), run({"export"}).out);
}

TEST_F(LeafFilesTest, ExportWritesToStandardOutputIfTheFileIsADash) {
  expectOutput({"export", "", "-"}, run({"export"}).out);
}

TEST_F(LeafFilesTest, ExportCreatesAFileForItsOwnerOnly) {
  run({"export", "", folder.file("all.json")});
  struct stat status = {};
  ASSERT_EQ(stat(folder.file("all.json").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST_F(LeafFilesTest, ExportReportsThatAFileCannotBeWritten) {
  expectFailure({"export", "", folder.path()}, 3, folder.path() + ": Is a directory");
}

TEST_F(LeafFilesTest, ExportKeepsTheModeAndTheOwnerOfAFile) {
  const std::string path = file("old");
  chmod(path.c_str(), 0640);
  const bool owned = chown(path.c_str(), 1, 2) == 0;  // only root may
  expectOutput({"export", "", path}, "");
  struct stat status = {};
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0640u);
  if (owned) {
    EXPECT_EQ(status.st_uid, 1u);
    EXPECT_EQ(status.st_gid, 2u);
  }
}

TEST_F(LeafFilesTest, ExportWritesWhatALinkPointsTo) {
  std::filesystem::create_directory(folder.file("below"));
  folder.write("below/target", "old");
  std::filesystem::create_symlink("target", folder.file("below/second"));
  std::filesystem::create_symlink("below/second", folder.file("first"));
  expectOutput({"export", "", folder.file("first")}, "");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("first")));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("below/second")));
  EXPECT_EQ(folder.read("below/target"), run({"export"}).out);
}

TEST_F(LeafFilesTest, ExportCreatesWhatALinkPointsTo) {
  std::filesystem::create_symlink("target", folder.file("link"));
  expectOutput({"export", "", folder.file("link")}, "");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
  EXPECT_EQ(folder.read("target"), run({"export"}).out);
}

TEST_F(LeafFilesTest, ExportWritesToADevice) {
  expectOutcome(run({"export", "", "/dev/stdout"}), 0, run({"export"}).out, "");
}

TEST_F(LeafFilesTest, ExportToAFullDeviceIsAFailure) {
  expectFailure({"export", "", "/dev/full"}, 3, "/dev/full: No space left on device");
}

TEST_F(LeafFilesTest, AFileThatCannotBeWrittenWholeStaysAsItWas) {
  expectUnchangedWithoutSpace("export ''");
}

TEST_F(LeafFilesTest, ATraceThatCannotBeWrittenWholeLeavesTheFileAsItWas) {
  context.answer("GET /statistics", "{}");
  context.answer("GET /trace", R"({"traceEvents":[]})");
  expectUnchangedWithoutSpace("--json stats --trace");
}

TEST_F(LeafFilesTest, AFailedExportLeavesNoFile) {
  expectFailure(
      {"export", "", folder.file("missing/all.json")}, 3,
      folder.file("missing/all.json") + ": cannot create a file in its folder: No such file or directory");
}

TEST_F(LeafFilesTest, AValueThatIsNotUtf8IsNotExported) {
  context.answer("GET /tree", R"({"leaves":[{"name":"A","type":"str","value":"a","computed":false},)"
                              R"({"name":"B","type":"str","value":"b\ufffd","computed":false}]})");
  const std::string path = file("old");
  expectFailure({"export", "", path}, 1,
                "B: the value cannot be exported: it has U+FFFD, or bytes that are not UTF-8");
  EXPECT_EQ(folder.read("leaves.json"), "old");
}

TEST_F(LeafFilesTest, AnExportDoesNotDifferFromTheContext) {
  run({"export", "", folder.file("all.json")});
  expectOutput({"diff", folder.file("all.json")}, "");
}

TEST_F(LeafFilesTest, DiffPrintsTheDifferences) {
  const std::string other =
      file(R"({"Host":{"type":"str","value":"switch"},"Mtu":{"type":"uint","value":"1500"}})");
  expectOutcome(run({"diff", other}), 1,
                "NAME  CONTEXT  FILE\n"
                "Host  router   switch\n",
                "");
}

TEST_F(LeafFilesTest, DiffHidesPasswords) {
  expectOutcome(run({"diff", file(R"({"Key":{"type":"pwd","value":"other"}})")}), 1,
                "NAME  CONTEXT   FILE\n"
                "Key   (hidden)  (hidden)\n",
                "");
}

TEST_F(LeafFilesTest, DiffShowsPasswordsWithReveal) {
  expectOutcome(run({"diff", "--reveal", file(R"({"Key":{"type":"pwd","value":"other"}})")}), 1,
                "NAME  CONTEXT  FILE\n"
                "Key   secret   other\n",
                "");
}

TEST_F(LeafFilesTest, DiffPrintsJson) {
  const std::string other =
      file(R"({"Host":{"type":"str","value":"x"},"Key":{"type":"pwd","value":"other"}})");
  expectOutcome(run({"diff", "--json", other}), 1,
                "{\"differences\":["
                "{\"name\":\"Host\",\"type\":\"str\",\"context\":\"router\",\"file\":\"x\"},"
                "{\"name\":\"Key\",\"type\":\"pwd\",\"context\":null,\"file\":null}]}\n",
                "");
}

TEST_F(LeafFilesTest, DiffChangesNothing) {
  run({"diff", file(R"({"Host":{"type":"str","value":"switch"}})")});
  EXPECT_EQ(context.requests(), Requests{"GET /tree?reveal=true"});
}

TEST_F(LeafFilesTest, ImportSetsAndPrintsTheDifferences) {
  const std::string other =
      file(R"({"Host":{"type":"str","value":"switch"},"Mtu":{"type":"uint","value":"1500"}})");
  expectOutput({"import", other}, "NAME  CONTEXT  FILE\nHost  router   switch\n");
  EXPECT_EQ(context.requests(),
            (Requests{"GET /tree?reveal=true", R"(PUT /leaf {"name":"Host","value":"switch"})"}));
}

TEST_F(LeafFilesTest, ImportSetsNothingIfAnyLeafConflicts) {
  const std::string other =
      file(R"({"Host":{"type":"str","value":"switch"},"Nobody":{"type":"str","value":""},)"
           R"("Mtu":{"type":"int","value":"1"},"Up":{"type":"bool","value":"0"}})");
  expectOutcome(run({"import", other}), 1, "",
                "contextctl: Nobody: unknown leaf\n"
                "contextctl: Mtu: the type is uint, not int\n"
                "contextctl: Up: a computed leaf cannot be set\n");
  EXPECT_EQ(context.requests(), Requests{"GET /tree?reveal=true"});
}

TEST_F(LeafFilesTest, ImportReportsHowManyLeavesAreSet) {
  context.answer("PUT /leaf", R"({"result":-1023,"error":"too small"})", 400);
  const std::string other = file(R"({"Host":{"type":"str","value":"x"},"Mtu":{"type":"uint","value":"1"}})");
  expectFailure({"import", other}, 1, "Host: too small; leaves set before: 0 of 2");
}

TEST_F(LeafFilesTest, AFileThatIsNotJsonIsAFailure) {
  expectFailure({"import", file("{")}, 3, folder.file("leaves.json") + ":1:2: not valid JSON");
}

TEST_F(LeafFilesTest, AnErrorInAFileIsReportedByItsLine) {
  expectFailure({"diff", file("{\n  \"Host\": x}")}, 3, folder.file("leaves.json") + ":2:11: not valid JSON");
}

TEST_F(LeafFilesTest, AFileThatIsNotAnObjectIsAFailure) {
  expectFailure(
      {"diff", file("[]")}, 3,
      folder.file("leaves.json") + R"(: not an object of leaves: {"NAME": {"type": "...", "value": "..."}})");
}

TEST_F(LeafFilesTest, ANumberOutOfRangeIsAFailure) {
  expectFailure({"import", file(R"({"Mtu":1e999})")}, 3,
                folder.file("leaves.json") + ": a number is out of range");
}

TEST_F(LeafFilesTest, ADeeplyNestedFileIsAFailure) {
  expectFailure({"import", file(std::string(80000, '['))}, 3,
                folder.file("leaves.json") + ": it is nested more than 64 levels deep");
}

TEST_F(LeafFilesTest, AFileThatIsTooLargeIsAFailure) {
  const std::string large = file("{");
  std::filesystem::resize_file(large, (64 << 20) + 1);
  expectFailure({"diff", large}, 3, large + ": larger than 64 MiB");
}

TEST_F(LeafFilesTest, StandardInputThatIsTooLargeIsAFailure) {
  const Outcome outcome = runProgram(
      context.base(), {"sh", "-c", "yes | head -c 67108865 | " CPP2C_CONTEXTCTL " diff -"}, {}, nullptr);
  expectOutcome(outcome, 3, "", "contextctl: standard input: larger than 64 MiB\n");
}

TEST_F(LeafFilesTest, AFileOfManyLeavesIsCompared) {
  std::string text;
  for (int i = 0; i < 5000; i++)
    text += (i == 0 ? "{" : ",") + ("\"" + std::to_string(i)) + R"(":{"type":"str","value":""})";
  const Outcome outcome = run({"diff", file(text + '}')});
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 5000);
  EXPECT_EQ(outcome.err.substr(0, outcome.err.find('\n')), "contextctl: 0: unknown leaf");
}

TEST_F(LeafFilesTest, TheLastOfEqualKeysCounts) {
  const std::string other = file(R"({"Host":{"type":"str","value":"a"},"Host":{"type":"str","value":"b"}})");
  expectOutcome(run({"diff", other}), 1, "NAME  CONTEXT  FILE\nHost  router   b\n", "");
}

TEST_F(LeafFilesTest, ExportEscapesEveryControlCharacter) {
  context.answer(
      "GET /tree",
      R"({"leaves":[{"name":"A","type":"str","value":"\u001b\u007f\u0080\u009f\u00a0","computed":false}]})");
  EXPECT_NE(run({"export"}).out.find("\"\\u001b\\u007f\\u0080\\u009f\xc2\xa0\""), std::string::npos);
}

TEST_F(LeafFilesTest, ALeafOfAnotherFormIsAFailure) {
  expectFailure(
      {"import", file(R"({"Host":"switch"})")}, 3,
      folder.file("leaves.json") + R"(: "Host" is not of the form {"type": "...", "value": "..."})");
}

TEST_F(LeafFilesTest, ALeafHasAStringTypeAndAStringValueOnly) {
  for (const char* leaf :
       {R"({"type":"str"})", R"({"value":"a"})", R"({"type":1,"value":"a"})", R"({"type":"str","value":1})",
        R"({"type":"str","value":"a","x":""})", R"({"type":"str","x":"a"})", "[]", "null"}) {
    const Outcome outcome = run({"diff", file("{\"A\":" + std::string(leaf) + '}')});
    EXPECT_EQ(outcome.status, 3) << leaf;
    EXPECT_NE(outcome.err.find(R"("A" is not of the form)"), std::string::npos) << leaf;
  }
}

TEST_F(LeafFilesTest, AMissingFileIsAFailure) {
  expectFailure({"diff", "/nowhere.json"}, 3, "/nowhere.json: No such file or directory");
}

}  // namespace
}  // namespace contextctl
