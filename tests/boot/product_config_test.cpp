// SPDX-License-Identifier: MIT
// A product and its module libraries.
#include <climits>
#include <string>

#include <dlfcn.h>

#include "boot/module.h"
#include "tests/boot/modules/recording_module.h"
#include "tests/boot/recording_product.h"
#include "tests/support/opened_library.h"
#include "tests/support/printed_text.h"
#include "tests/support/recording_test.h"

namespace {

constexpr const char* kUnknownLibrary = "/nowhere/no_such_module.so";

// Closes a library that is still open, so that the next test finds it closed.
void closeLeftOpen(const char* path) {
  void* handle = dlopen(path, RTLD_LAZY | RTLD_NOLOAD);
  dlclose(handle);
  dlclose(handle);
}

// A DllMgr without a library, for modules that the test owns.
DllMgr* noLibrary() {
  return new DllMgr(kUnknownLibrary);
}

// Modules owned by the test, in ascending order of their addresses, but added in a different order.
class ProductModulesTest : public RecordingTest {
 protected:
  ProductModulesTest() {
    for (const std::size_t index : {2U, 0U, 1U}) product.modules[&modules[index]] = noLibrary();
  }

  RecordingModule modules[3] = {RecordingModule("a"), RecordingModule("b"), RecordingModule("c")};
  RecordingProduct product;
};

// One of the four operations that differ only in name.
struct Step {
  const char* name;
  int (IBootContext::*operation)();
};

class ProductStepTest : public ProductModulesTest, public ::testing::WithParamInterface<Step> {
 protected:
  int step() { return (product.*GetParam().operation)(); }

  std::string of(const std::string& module) const { return module + '.' + GetParam().name; }
  Calls allThree() const { return {of("a") + "()", of("b") + "()", of("c") + "()"}; }
};

TEST_P(ProductStepTest, CallsAllModulesInOrderOfTheirAddresses) {
  EXPECT_EQ(step(), 0);
  EXPECT_EQ(calls(), allThree());
}

TEST_P(ProductStepTest, ResultIsTheLastFailure) {
  log.results = {{of("a"), -1}, {of("b"), -2}};
  EXPECT_EQ(step(), -2);
  log.results = {{of("a"), -2}, {of("b"), -1}};
  EXPECT_EQ(step(), -1);
  log.results = {{of("a"), -3}, {of("b"), -2}, {of("c"), -1}};
  EXPECT_EQ(step(), -1);
}

TEST_P(ProductStepTest, SuccessAfterAFailureDoesNotHideIt) {
  log.results = {{of("a"), -7}};
  EXPECT_EQ(step(), -7);
}

TEST_P(ProductStepTest, OtherModulesAreCalledAfterAFailure) {
  log.results = {{of("a"), -7}, {of("b"), -8}};
  step();
  EXPECT_EQ(calls(), allThree());
}

TEST_P(ProductStepTest, ResultMayBePositive) {
  log.results = {{of("a"), -7}, {of("c"), 100}};
  EXPECT_EQ(step(), 100);
}

TEST_P(ProductStepTest, NullEntriesAreSkipped) {
  delete product.modules[&modules[1]];
  product.modules[&modules[1]] = nullptr;
  product.modules[nullptr] = noLibrary();
  log.results = {{of("b"), -8}};
  EXPECT_EQ(step(), 0);
  EXPECT_EQ(calls(), Calls({of("a") + "()", of("c") + "()"}));
}

TEST_P(ProductStepTest, WithoutModulesSucceeds) {
  product.release_modules();
  EXPECT_EQ(step(), 0);
  EXPECT_EQ(calls(), Calls());
}

INSTANTIATE_TEST_SUITE_P(Boot, ProductStepTest,
                         ::testing::Values(Step{"onLoad", &IBootContext::onLoad},
                                           Step{"onStart", &IBootContext::onStart},
                                           Step{"onRun", &IBootContext::onRun},
                                           Step{"onUnload", &IBootContext::onUnload}),
                         [](const auto& step) { return std::string(step.param.name); });

using ProductConfigurationTest = ProductModulesTest;

TEST_F(ProductConfigurationTest, ConfigReachesTheModulesForCfmd) {
  EXPECT_EQ(product.onConfig("cfmd", INT_MIN), 0);
  EXPECT_EQ(calls(), Calls({"a.onConfig('cfmd', -2147483648)", "b.onConfig('cfmd', -2147483648)",
                            "c.onConfig('cfmd', -2147483648)"}));
}

TEST_F(ProductConfigurationTest, UnconfigReachesTheModulesForMaster) {
  EXPECT_EQ(product.onUnconfig("master", INT_MAX), 0);
  EXPECT_EQ(calls(), Calls({"a.onUnconfig('master', 2147483647)", "b.onUnconfig('master', 2147483647)",
                            "c.onUnconfig('master', 2147483647)"}));
}

TEST_F(ProductConfigurationTest, ConfigForAnotherNameReachesNoModule) {
  for (const std::string& name :
       {std::string("master"), std::string(), std::string("Cfmd"), std::string("cfm"), std::string("cfmd "),
        std::string(" cfmd"), std::string("cfmd\0", 5)}) {
    SCOPED_TRACE(::testing::PrintToString(name));
    EXPECT_EQ(product.onConfig(name, 0), 100);
    EXPECT_EQ(calls(), Calls());
  }
}

TEST_F(ProductConfigurationTest, UnconfigForAnotherNameReachesNoModule) {
  for (const std::string& name :
       {std::string("cfmd"), std::string(), std::string("Master"), std::string("maste"),
        std::string("master "), std::string(" master"), std::string("master\0", 7)}) {
    SCOPED_TRACE(::testing::PrintToString(name));
    EXPECT_EQ(product.onUnconfig(name, 0), 100);
    EXPECT_EQ(calls(), Calls());
  }
}

TEST_F(ProductConfigurationTest, ResultIsTheLastFailure) {
  log.results = {{"a.onConfig", -1}, {"b.onConfig", -2}, {"b.onUnconfig", -3}, {"c.onUnconfig", 100}};
  EXPECT_EQ(product.onConfig("cfmd", 0), -2);
  EXPECT_EQ(product.onUnconfig("master", 0), 100);
  EXPECT_EQ(calls().size(), 6U);
}

TEST_F(ProductConfigurationTest, NullEntriesAreSkipped) {
  delete product.modules[&modules[0]];
  product.modules[&modules[0]] = nullptr;
  product.modules[nullptr] = noLibrary();
  product.onConfig("cfmd", 1);
  product.onUnconfig("master", 2);
  EXPECT_EQ(calls(), Calls({"b.onConfig('cfmd', 1)", "c.onConfig('cfmd', 1)", "b.onUnconfig('master', 2)",
                            "c.onUnconfig('master', 2)"}));
}

TEST_F(ProductConfigurationTest, WithoutModulesTheResultDependsOnTheName) {
  RecordingProduct none;
  EXPECT_EQ(none.onConfig("cfmd", 0), 0);
  EXPECT_EQ(none.onConfig("master", 0), 100);
  EXPECT_EQ(none.onUnconfig("master", 0), 0);
  EXPECT_EQ(none.onUnconfig("cfmd", 0), 100);
}

using ProductDependenceTest = ProductModulesTest;

TEST_F(ProductDependenceTest, ReachesAllModules) {
  product.recvDependence("link");
  EXPECT_EQ(calls(),
            Calls({"a.recvDependence('link')", "b.recvDependence('link')", "c.recvDependence('link')"}));
}

TEST_F(ProductDependenceTest, NamesReachTheModulesUnchanged) {
  product.recvDependence(std::string("A\0B", 3));
  EXPECT_EQ(calls(),
            Calls({"a.recvDependence('A\\0B')", "b.recvDependence('A\\0B')", "c.recvDependence('A\\0B')"}));
}

TEST_F(ProductDependenceTest, ResultsAreIgnored) {
  log.results = {{"a.recvDependence", -1}, {"b.recvDependence", 100}, {"c.recvDependence", -3}};
  EXPECT_EQ(product.recvDependence("link"), 0);
  EXPECT_EQ(calls().size(), 3U);
}

TEST_F(ProductDependenceTest, NullEntriesAreSkipped) {
  delete product.modules[&modules[2]];
  product.modules[&modules[2]] = nullptr;
  product.modules[nullptr] = noLibrary();
  product.recvDependence("link");
  EXPECT_EQ(calls(), Calls({"a.recvDependence('link')", "b.recvDependence('link')"}));
}

TEST_F(ProductDependenceTest, WithoutModulesSucceeds) {
  EXPECT_EQ(RecordingProduct().recvDependence("link"), 0);
}

using ProductStopTest = ProductModulesTest;

TEST_F(ProductStopTest, ReachesNoModule) {
  log.results = {{"a.onStop", -1}};
  EXPECT_EQ(product.onStop(), 0);
  EXPECT_EQ(calls(), Calls());
}

using ProductReleaseTest = RecordingTest;

TEST_F(ProductReleaseTest, ForgetsAllModules) {
  RecordingModule module("a");
  RecordingProduct product;
  product.modules[&module] = noLibrary();
  product.release_modules();
  EXPECT_TRUE(product.modules.empty());
  EXPECT_EQ(calls(), Calls());
}

TEST_F(ProductReleaseTest, WithoutModulesDoesNothing) {
  RecordingProduct product;
  product.release_modules();
  product.release_modules();
  EXPECT_TRUE(product.modules.empty());
  EXPECT_EQ(calls(), Calls());
}

TEST_F(ProductReleaseTest, EntryWithoutALibraryIsRemoved) {
  RecordingModule module("a");
  RecordingProduct product;
  product.modules[&module] = nullptr;
  product.release_modules();
  EXPECT_TRUE(product.modules.empty());
}

using ProductLibrariesTest = RecordingTest;

TEST_F(ProductLibrariesTest, NewProductHasOnlyItsContext) {
  const RecordingProduct product({FIRST_MODULE}, &context);
  EXPECT_EQ(product.context, &context);
  EXPECT_TRUE(product.libraries.empty());
  EXPECT_TRUE(product.modules.empty());
  EXPECT_EQ(calls(), Calls());
}

TEST_F(ProductLibrariesTest, EachIsOpenedAndCalledInOrderOfTheList) {
  RecordingProduct product({SECOND_MODULE, FIRST_MODULE}, &context);
  product.loadModules();
  EXPECT_EQ(calls(), Calls({"product.listLibraries()", "second.open()", "second.getInstance(object)",
                            "first.open()", "first.getInstance(object)"}));
}

TEST_F(ProductLibrariesTest, DerivedClassFillsTheList) {
  RecordingProduct product({SECOND_MODULE, kUnknownLibrary, FIRST_MODULE});
  product.loadModules();
  EXPECT_EQ(product.libraries, std::list<std::string>({SECOND_MODULE, kUnknownLibrary, FIRST_MODULE}));
}

TEST_F(ProductLibrariesTest, EachReceivesTheContextOfTheProduct) {
  RecordingProduct product({FIRST_MODULE, SECOND_MODULE}, &context);
  product.loadModules();
  ASSERT_EQ(product.modules.size(), 2U);
  for (const auto& [module, library] : product.modules) {
    EXPECT_EQ(static_cast<RecordingModule*>(module)->asked_with, static_cast<void*>(&context));
  }
}

TEST_F(ProductLibrariesTest, EachReceivesANullContext) {
  RecordingProduct product({FIRST_MODULE});
  product.loadModules();
  EXPECT_EQ(calls().back(), "first.getInstance(null)");
}

TEST_F(ProductLibrariesTest, EachModuleIsStoredWithItsLibrary) {
  RecordingProduct product({FIRST_MODULE, SECOND_MODULE}, &context);
  product.loadModules();
  ASSERT_EQ(product.modules.size(), 2U);
  for (const auto& [module, library] : product.modules) {
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(reinterpret_cast<IModule*>(library->getInstance(nullptr)), module);
  }
}

TEST_F(ProductLibrariesTest, LoadedModulesAreCalledInOrderOfTheirAddresses) {
  RecordingProduct forth({FIRST_MODULE, SECOND_MODULE});
  forth.loadModules();
  RecordingProduct back({SECOND_MODULE, FIRST_MODULE});
  back.loadModules();
  Calls expected;
  for (const auto& [module, library] : forth.modules) {
    expected.push_back(static_cast<RecordingModule*>(module)->name + ".onLoad()");
  }
  calls();
  forth.onLoad();
  EXPECT_EQ(calls(), expected);
  back.onLoad();
  EXPECT_EQ(calls(), expected);
}

TEST_F(ProductLibrariesTest, EmptyListOpensNothing) {
  RecordingProduct product;
  product.loadModules();
  EXPECT_TRUE(product.modules.empty());
  EXPECT_EQ(calls(), Calls({"product.listLibraries()"}));
}

TEST_F(ProductLibrariesTest, UnknownLibraryIsSkippedSilently) {
  PrintedText printed;
  RecordingProduct product({kUnknownLibrary, FIRST_MODULE});
  product.loadModules();
  EXPECT_EQ(product.modules.size(), 1U);
  EXPECT_EQ(calls(), Calls({"product.listLibraries()", "first.open()", "first.getInstance(null)"}));
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(printed.standardError(), "");
}

TEST_F(ProductLibrariesTest, LibraryWithoutGetInstanceIsSkippedAndRemainsOpen) {
  {
    RecordingProduct product({NO_GET_INSTANCE_MODULE, FIRST_MODULE});
    product.loadModules();
    EXPECT_EQ(product.modules.size(), 1U);
  }
  ASSERT_TRUE(OpenedLibrary::isLoaded(NO_GET_INSTANCE_MODULE));
  EXPECT_EQ(*OpenedLibrary(NO_GET_INSTANCE_MODULE).find<int>("no_get_instance_released"), 0);
  closeLeftOpen(NO_GET_INSTANCE_MODULE);
}

TEST_F(ProductLibrariesTest, LibraryThatReturnsNullIsSkippedAndRemainsOpen) {
  {
    RecordingProduct product({NULL_MODULE, FIRST_MODULE});
    product.loadModules();
    EXPECT_EQ(product.modules.size(), 1U);
  }
  ASSERT_TRUE(OpenedLibrary::isLoaded(NULL_MODULE));
  EXPECT_EQ(*OpenedLibrary(NULL_MODULE).find<int>("null_module_asked"), 1);
  EXPECT_EQ(*OpenedLibrary(NULL_MODULE).find<int>("null_module_released"), 0);
  closeLeftOpen(NULL_MODULE);
}

TEST_F(ProductLibrariesTest, ReleasePassesTheModuleThenNullAndClosesTheLibrary) {
  RecordingProduct product({FIRST_MODULE});
  product.loadModules();
  calls();
  product.release_modules();
  EXPECT_EQ(calls(), Calls({"first.relInstance(object)", "first.relInstance(null)", "first.close()"}));
  EXPECT_FALSE(OpenedLibrary::isLoaded(FIRST_MODULE));
  EXPECT_TRUE(product.modules.empty());
}

TEST_F(ProductLibrariesTest, ModulesAreReleasedInOrderOfTheirAddresses) {
  RecordingProduct product({FIRST_MODULE, SECOND_MODULE});
  product.loadModules();
  Calls expected;
  for (const auto& [module, library] : product.modules) {
    const std::string name = static_cast<RecordingModule*>(module)->name;
    expected.insert(expected.end(),
                    {name + ".relInstance(object)", name + ".relInstance(null)", name + ".close()"});
  }
  calls();
  product.release_modules();
  EXPECT_EQ(calls(), expected);
}

TEST_F(ProductLibrariesTest, ReleaseClosesTheLibraryOfAnEntryWithoutAModule) {
  RecordingProduct product;
  product.modules[nullptr] = new DllMgr(FIRST_MODULE);
  calls();
  product.release_modules();
  EXPECT_EQ(calls(), Calls({"first.relInstance(null)", "first.relInstance(null)", "first.close()"}));
}

TEST_F(ProductLibrariesTest, DestructionReleasesTheModules) {
  {
    RecordingProduct product({FIRST_MODULE});
    product.loadModules();
    calls();
  }
  EXPECT_EQ(calls(), Calls({"first.relInstance(object)", "first.relInstance(null)", "first.close()"}));
}

TEST_F(ProductLibrariesTest, DestructionAfterReleaseDoesNothing) {
  {
    RecordingProduct product({FIRST_MODULE});
    product.loadModules();
    product.release_modules();
    calls();
  }
  EXPECT_EQ(calls(), Calls());
}

TEST_F(ProductLibrariesTest, LibraryWithoutRelInstanceIsClosed) {
  RecordingProduct product({NO_REL_INSTANCE_MODULE});
  product.loadModules();
  EXPECT_EQ(product.onLoad(), -21);
  EXPECT_TRUE(OpenedLibrary::isLoaded(NO_REL_INSTANCE_MODULE));
  product.release_modules();
  EXPECT_FALSE(OpenedLibrary::isLoaded(NO_REL_INSTANCE_MODULE));
}

TEST_F(ProductLibrariesTest, LibraryListedTwiceIsStoredOnceAndRemainsOpen) {
  RecordingProduct product({TWICE_MODULE, TWICE_MODULE});
  product.loadModules();
  EXPECT_EQ(calls(), Calls({"product.listLibraries()", "twice.open()", "twice.getInstance(null)",
                            "twice.getInstance(null)"}));
  EXPECT_EQ(product.modules.size(), 1U);
  product.onLoad();
  EXPECT_EQ(calls(), Calls({"twice.onLoad()"}));

  product.release_modules();
  EXPECT_EQ(calls(), Calls({"twice.relInstance(object)", "twice.relInstance(null)"}));
  ASSERT_TRUE(OpenedLibrary::isLoaded(TWICE_MODULE));
  closeLeftOpen(TWICE_MODULE);
  EXPECT_EQ(calls(), Calls({"twice.close()"}));
}

TEST_F(ProductLibrariesTest, SecondHandleOfAModuleReplacesTheFirst) {
  RecordingProduct product({FIRST_MODULE});
  product.loadModules();
  ASSERT_EQ(product.modules.size(), 1U);
  DllMgr* first = product.modules.begin()->second;
  product.libraries.clear();
  product.loadModules();
  ASSERT_EQ(product.modules.size(), 1U);
  EXPECT_NE(product.modules.begin()->second, first);
  delete first;  // the product no longer has it
  product.release_modules();
  EXPECT_FALSE(OpenedLibrary::isLoaded(FIRST_MODULE));
}

TEST_F(ProductLibrariesTest, LibraryMayBeLoadedAgainAfterRelease) {
  RecordingProduct product({FIRST_MODULE});
  product.loadModules();
  product.release_modules();
  product.libraries.clear();
  calls();
  product.loadModules();
  EXPECT_EQ(calls(), Calls({"product.listLibraries()", "first.open()", "first.getInstance(null)"}));
  EXPECT_EQ(product.modules.size(), 1U);
}

TEST_F(ProductLibrariesTest, LoadAndUnloadSendNoDiagnostic) {
  PrintedText printed;
  {
    RecordingProduct product({FIRST_MODULE, kUnknownLibrary}, &context);
    product.loadModules();
    log.results["first.onLoad"] = -1;
    product.onLoad();
    product.onUnload();
  }
  EXPECT_TRUE(context.diagnostics.empty());
  EXPECT_EQ(printed.standardOutput(), "");
  EXPECT_EQ(printed.standardError(), "");
}

}  // namespace
