// SPDX-License-Identifier: MIT
#include <cstddef>

#include "contextctl/inspect/operations.h"
#include "tests/contextctl/contextctl_test.h"
#include "tests/contextctl/inspect/inspect_test.h"
#include "tests/host/support/open_descriptors.h"

namespace contextctl {
namespace {

class InspectLiveTest : public ContextctlTest {
 protected:
  static Report live(const std::string& library, LibraryKind kind, double seconds = 10) {
    InspectOptions options = optionsFor(library);
    options.kind = kind;
    options.live = true;
    options.seconds = seconds;
    return inspect(options);
  }

  static Findings findings(const std::string& name, double seconds = 10) {
    return findingsOn("live", live(inspected(name), LibraryKind::kModule, seconds));
  }
};

TEST_F(InspectLiveTest, TheRecordingContextHasEveryOperationInItsPlace) {
  EXPECT_EQ(findingsOn("live", live(CPP2C_RECORDING_CONTEXT, LibraryKind::kContext)),
            Findings{"ok: every operation is where libcpp2c calls it"});
}

TEST_F(InspectLiveTest, TheHostContextHasEveryOperationInItsPlace) {
  EXPECT_EQ(findingsOn("live", live(CPP2C_HOST_CONTEXT, LibraryKind::kContext)),
            Findings{"ok: every operation is where libcpp2c calls it"});
}

TEST_F(InspectLiveTest, AModuleHasEveryOperationInItsPlace) {
  EXPECT_EQ(findings("module"), Findings{"ok: every operation is where libcpp2c calls it"});
}

TEST_F(InspectLiveTest, DescriptorsAreClosed) {
  const std::size_t before = host::openDescriptors();
  findings("module");
  EXPECT_EQ(host::openDescriptors(), before);
}

TEST_F(InspectLiveTest, EveryPositionIsListed) {
  const Report report = live(CPP2C_RECORDING_CONTEXT, LibraryKind::kContext);
  ASSERT_EQ(report.slots.size(), 24u);
  EXPECT_EQ(report.slots[23].position, 24);
  EXPECT_EQ(report.slots[23].operation, "notifyDepends");
  EXPECT_EQ(report.slots[2].symbol.compare(0, 24, "RecordingContext::init(u"), 0) << report.slots[2].symbol;
}

TEST_F(InspectLiveTest, HiddenFunctionsHaveNames) {
  const Report report = live(inspected("module"), LibraryKind::kModule);
  ASSERT_EQ(report.slots.size(), 10u);
  EXPECT_EQ(report.slots[2].symbol, "(anonymous namespace)::Module::onLoad()");
}

TEST_F(InspectLiveTest, StrippedFunctionsHavePlaces) {
  const Report report = live(inspected("stripped"), LibraryKind::kModule);
  ASSERT_EQ(report.slots.size(), 10u);
  EXPECT_EQ(report.slots[2].symbol.substr(0, 17), "libstripped.so+0x");
  EXPECT_EQ(findingsOn("live", report), Findings{"ok: every operation is where libcpp2c calls it"});
}

TEST_F(InspectLiveTest, OperationsInAnotherOrderAreAWarning) {
  EXPECT_EQ(findings("shuffled"), (Findings{"warning: position 3, onLoad, holds Shuffled::onStart()",
                                            "warning: position 4, onStart, holds Shuffled::onLoad()"}));
}

TEST_F(InspectLiveTest, OperationsThatShareOneFunctionAreInTheirPlaces) {
  const Report report = live(inspected("folded"), LibraryKind::kModule);
  EXPECT_EQ(findingsOn("live", report), Findings{"ok: every operation is where libcpp2c calls it"});
  ASSERT_EQ(report.slots.size(), 10u);
  EXPECT_EQ(report.slots[5].symbol, "Folded::onRun()");
}

TEST_F(InspectLiveTest, MissingOperationsDoNotFit) {
  EXPECT_EQ(findings("holes"), (Findings{"no: position 5, onConfig, is not implemented",
                                         "no: position 7, onUnconfig, holds no code"}));
}

TEST_F(InspectLiveTest, NoInstanceDoesNotFit) {
  EXPECT_EQ(findings("silent"), Findings{"no: getInstance returned no instance"});
}

TEST_F(InspectLiveTest, ACrashingConstructorDoesNotFit) {
  EXPECT_EQ(findings("constructor_crash"),
            Findings{"no: opening the library ended the process: Segmentation fault"});
}

TEST_F(InspectLiveTest, AHangingGetInstanceDoesNotFit) {
  EXPECT_EQ(findings("instance_hang", 0.3), Findings{"no: getInstance takes longer than 0.3 s"});
}

TEST_F(InspectLiveTest, AThrowingGetInstanceDoesNotFit) {
  EXPECT_EQ(findings("instance_throw"), Findings{"no: getInstance ended the process: Aborted"});
}

TEST_F(InspectLiveTest, AReleaseThatEndsTheProcessDoesNotFit) {
  EXPECT_EQ(findings("release_exit"), Findings{"no: relInstance ended the process with status 7"});
}

TEST_F(InspectLiveTest, AMissingEntryPointDoesNotFit) {
  EXPECT_EQ(findings("bare"), Findings{"no: an entry point is missing"});
}

TEST_F(InspectLiveTest, ALibraryThatCannotBeOpenedDoesNotFit) {
  EXPECT_EQ(findings("needy"),
            Findings{"no: cannot open the library: libhelper.so: cannot open shared object file: No "
                     "such file or directory"});
}

TEST_F(InspectLiveTest, ADependencyIsOpenedFromItsNamedFolder) {
  InspectOptions options = optionsFor(inspected("needy"));
  options.library_path = CPP2C_INSPECTED "/helper";
  options.live = true;
  EXPECT_EQ(findingsOn("live", options), Findings{"no: getInstance returned no instance"});
}

TEST_F(InspectLiveTest, TheOutputOfTheLibraryIsNotInTheReport) {
  const Outcome outcome = run({"inspect", "--live", "--kind", "module", inspected("release_exit")});
  EXPECT_EQ(outcome.err, "hello\n");
  EXPECT_EQ(outcome.out.find("hello"), std::string::npos);
  EXPECT_EQ(outcome.status, 1);
}

TEST_F(InspectLiveTest, PositionsArePrintedAsATable) {
  const Outcome outcome = run({"inspect", "--live", "--kind", "module", inspected("holes")});
  EXPECT_NE(outcome.out.find("\n"
                             "POSITION  OPERATION       SYMBOL\n"
                             "1         ~IModule        nameless\n"
                             "2         ~IModule        nameless\n"
                             "3         onLoad          nameless\n"
                             "4         onStart         nameless\n"
                             "5         onConfig        __cxa_pure_virtual\n"
                             "6         onRun           nameless\n"
                             "7         onUnconfig\n"
                             "8         onStop          nameless\n"
                             "9         onUnload        nameless\n"
                             "10        recvDependence  nameless\n"
                             "\n"
                             "It does not fit.\n"),
            std::string::npos)
      << outcome.out;
}

}  // namespace
}  // namespace contextctl
