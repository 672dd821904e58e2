// SPDX-License-Identifier: MIT
// The positions of the operations of a product in its virtual table.
#include <cstring>
#include <new>
#include <string>

#include "tests/boot/modules/recording_module.h"
#include "tests/boot/recording_product.h"
#include "tests/support/recording_test.h"

namespace {

class CountedProduct : public RecordingProduct {
 public:
  explicit CountedProduct(int& destroyed) : destroyed_(destroyed) {}
  ~CountedProduct() override { ++destroyed_; }

  // The memory of products created with `new`.
  static void* operator new(std::size_t size) { return ::operator new(size); }
  static void* operator new(std::size_t /*size*/, void* place) { return place; }
  static void operator delete(void* product) {
    ++freed;
    ::operator delete(product);
  }

  static int freed;

 private:
  int& destroyed_;
};

int CountedProduct::freed = 0;

// Returns the operation at `position`, counted from 1, as a function whose first argument is the object.
template <typename Function>
Function* entry(IProductConfig& product, std::size_t position) {
  void* const* table = nullptr;
  std::memcpy(&table, static_cast<const void*>(&product), sizeof table);
  return reinterpret_cast<Function*>(table[position - 1]);
}

class ProductPositionsTest : public RecordingTest {
 protected:
  ProductPositionsTest() { product.modules[&module] = new DllMgr("/nowhere/no_such_module.so"); }

  int enter(std::size_t position) { return entry<int(IProductConfig*)>(product, position)(&product); }

  int enter(std::size_t position, const std::string& name, int arg) {
    return entry<int(IProductConfig*, std::string, int)>(product, position)(&product, name, arg);
  }

  RecordingModule module{"a"};
  RecordingProduct product;
};

TEST_F(ProductPositionsTest, Position1DestroysTheObject) {
  int destroyed = 0;
  CountedProduct::freed = 0;
  alignas(CountedProduct) char place[sizeof(CountedProduct)];
  auto* counted = new (place) CountedProduct(destroyed);
  entry<void(IProductConfig*)>(*counted, 1)(counted);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(CountedProduct::freed, 0);
}

TEST_F(ProductPositionsTest, Position2DestroysAndFreesTheObject) {
  int destroyed = 0;
  CountedProduct::freed = 0;
  IProductConfig* counted = new CountedProduct(destroyed);
  entry<void(IProductConfig*)>(*counted, 2)(counted);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(CountedProduct::freed, 1);
}

TEST_F(ProductPositionsTest, Positions3And4LoadAndStart) {
  log.results = {{"a.onLoad", -3}, {"a.onStart", -4}};
  EXPECT_EQ(enter(3), -3);
  EXPECT_EQ(enter(4), -4);
  EXPECT_EQ(calls(), Calls({"a.onLoad()", "a.onStart()"}));
}

TEST_F(ProductPositionsTest, Position5Configures) {
  log.results = {{"a.onConfig", -5}};
  EXPECT_EQ(enter(5, "cfmd", 55), -5);
  EXPECT_EQ(calls(), Calls({"a.onConfig('cfmd', 55)"}));
}

TEST_F(ProductPositionsTest, Position6Runs) {
  log.results = {{"a.onRun", -6}};
  EXPECT_EQ(enter(6), -6);
  EXPECT_EQ(calls(), Calls({"a.onRun()"}));
}

TEST_F(ProductPositionsTest, Position7Unconfigures) {
  log.results = {{"a.onUnconfig", -7}};
  EXPECT_EQ(enter(7, "master", 77), -7);
  EXPECT_EQ(calls(), Calls({"a.onUnconfig('master', 77)"}));
}

TEST_F(ProductPositionsTest, Position8StopsWithoutCallingAModule) {
  EXPECT_EQ(enter(8), 0);
  EXPECT_EQ(calls(), Calls());
}

TEST_F(ProductPositionsTest, Position9Unloads) {
  log.results = {{"a.onUnload", -9}};
  EXPECT_EQ(enter(9), -9);
  EXPECT_EQ(calls(), Calls({"a.onUnload()"}));
}

TEST_F(ProductPositionsTest, Position10ReceivesADependence) {
  EXPECT_EQ(entry<int(IProductConfig*, std::string)>(product, 10)(&product, "link"), 0);
  EXPECT_EQ(calls(), Calls({"a.recvDependence('link')"}));
}

TEST_F(ProductPositionsTest, Positions11To13CallTheDerivedClass) {
  EXPECT_EQ(entry<std::string(IProductConfig*)>(product, 11)(&product), "productName");
  entry<void(IProductConfig*)>(product, 12)(&product);
  EXPECT_EQ(entry<std::string(IProductConfig*)>(product, 13)(&product), "productVersion");
  EXPECT_EQ(calls(), Calls({"product.productName()", "product.listLibraries()", "product.productVersion()"}));
}

}  // namespace
