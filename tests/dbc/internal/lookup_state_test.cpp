// SPDX-License-Identifier: MIT
// The state of the cache after a lookup, and the lookup of a single table.
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dbc/client_table.h"
#include "include_c"

namespace {

using Tables = std::map<int, DBClientTable*>;
using Names = std::vector<std::string>;

int collect(int /*db*/, char* name, void* /*userdata*/, c_pass_fn3 /*pass_fn3*/, c_pass_fn4 /*pass_fn4*/,
            void* arg) {
  static_cast<Names*>(arg)->push_back(name);
  return 0;
}

class LookupStateTest : public ::testing::Test {
 protected:
  LookupStateTest() : tables(*static_cast<Tables*>(c_dbc_create())) {}
  ~LookupStateTest() override { c_dbc_db_destory(); }

  Names walk(int db) {
    Names names;
    c_dbc_lookup(db, collect, nullptr, nullptr, &names);
    return names;
  }

  Tables& tables;
};

TEST_F(LookupStateTest, UnknownObjectCreatesANullEntry) {
  walk(77);
  EXPECT_EQ(tables, Tables({{77, nullptr}}));
}

TEST_F(LookupStateTest, NullVisitOfAnUnknownObjectCreatesANullEntry) {
  c_dbc_lookup(77, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(tables, Tables({{77, nullptr}}));
}

TEST_F(LookupStateTest, NullEntryVisitsNothing) {
  tables[77] = nullptr;
  EXPECT_EQ(walk(77), Names());
}

TEST_F(LookupStateTest, NullItemsAreSkippedAndKept) {
  c_dbc_add_userdata(5, "b", nullptr);
  tables[5]->items["a"] = nullptr;
  tables[5]->items["c"] = nullptr;
  EXPECT_EQ(walk(5), Names({"b"}));
  EXPECT_EQ(tables[5]->items.size(), 3U);
}

TEST_F(LookupStateTest, TableOfNullItemsVisitsNothing) {
  tables[5] = new DBClientTable;
  tables[5]->items["a"] = nullptr;
  EXPECT_EQ(walk(5), Names());
}

TEST_F(LookupStateTest, EmptyTableVisitsNothing) {
  tables[5] = new DBClientTable;
  EXPECT_EQ(walk(5), Names());
}

TEST_F(LookupStateTest, VisitReceivesTheNameInTheItem) {
  c_dbc_add_userdata(5, "key", nullptr);
  tables[5]->items["key"]->name = "name";
  EXPECT_EQ(walk(5), Names({"name"}));
}

TEST(ClientTableLookupTest, NullVisitCallsNothing) {
  DBClientTable table;
  table.slot("a") = new DBClientItem{"a", nullptr};
  table.lookup(5, nullptr, nullptr, nullptr, nullptr);
  EXPECT_EQ(table.items.size(), 1U);
}

TEST(ClientTableLookupTest, VisitsEachItem) {
  DBClientTable table;
  Names names;
  table.slot("b") = new DBClientItem{"b", nullptr};
  table.slot("a") = new DBClientItem{"a", nullptr};
  table.lookup(5, collect, nullptr, nullptr, &names);
  EXPECT_EQ(names, Names({"a", "b"}));
}

}  // namespace
