// SPDX-License-Identifier: MIT
// The internal state of the cache, including its null entries.
#include "dbc/client_table.h"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "include_c"

namespace {

using Root = std::map<int, DBClientTable*>;

class ClientTableTest : public testing::Test {
 protected:
  ~ClientTableTest() override { c_dbc_db_destory(); }

  // The objects in the root, and whether each has a table.
  std::vector<std::pair<int, bool>> objects() const {
    std::vector<std::pair<int, bool>> result;
    for (const auto& [db, table] : root) result.emplace_back(db, table != nullptr);
    return result;
  }

  // The names in the table of `db`, and whether each has an item.
  std::vector<std::pair<std::string, bool>> names(int db) const {
    std::vector<std::pair<std::string, bool>> result;
    for (const auto& [name, item] : root.at(db)->items) result.emplace_back(name, item != nullptr);
    return result;
  }

  using Objects = std::vector<std::pair<int, bool>>;
  using Names = std::vector<std::pair<std::string, bool>>;

  Root& root = *static_cast<Root*>(c_dbc_create());
  char p = 'p';
};

TEST_F(ClientTableTest, NewCacheIsEmpty) {
  EXPECT_EQ(objects(), Objects());
}

TEST_F(ClientTableTest, ItemHasItsNameBeforeItsPointer) {
  static_assert(offsetof(DBClientItem, name) == 0);
  static_assert(offsetof(DBClientItem, userdata) == sizeof(std::string));
  static_assert(sizeof(DBClientItem) == sizeof(std::string) + sizeof(void*));
  c_dbc_add_userdata(5, "x", &p);
  const DBClientItem* item = root.at(5)->items.at("x");
  EXPECT_EQ(item->name, "x");
  EXPECT_EQ(item->userdata, &p);
}

TEST_F(ClientTableTest, TableHasOnlyItsItems) {
  static_assert(sizeof(DBClientTable) == sizeof(std::map<std::string, DBClientItem*>));
}

TEST_F(ClientTableTest, ReplacingAPointerKeepsTheItem) {
  c_dbc_add_userdata(5, "x", nullptr);
  const DBClientItem* item = root.at(5)->items.at("x");
  c_dbc_add_userdata(5, "x", &p);
  EXPECT_EQ(root.at(5)->items.at("x"), item);
  EXPECT_EQ(item->userdata, &p);
}

TEST_F(ClientTableTest, NamesAreSortedByBytes) {
  for (const char* name : {"b", "ab", "a", "\xff", "A", ""}) c_dbc_add_userdata(5, name, nullptr);
  EXPECT_EQ(names(5),
            Names({{"", true}, {"A", true}, {"a", true}, {"ab", true}, {"b", true}, {"\xff", true}}));
}

TEST_F(ClientTableTest, ObjectsAreSortedAsSignedNumbers) {
  for (const int db : {3, -1, 0}) c_dbc_add_userdata(db, "x", nullptr);
  EXPECT_EQ(objects(), Objects({{-1, true}, {0, true}, {3, true}}));
}

TEST_F(ClientTableTest, ReadOfAnUnknownObjectCreatesANullEntry) {
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), nullptr);
  EXPECT_EQ(objects(), Objects({{5, false}}));
}

TEST_F(ClientTableTest, ReadOfAnUnknownNameCreatesANullEntry) {
  c_dbc_add_userdata(5, "x", &p);
  EXPECT_EQ(c_dbc_get_userdata(5, "y"), nullptr);
  EXPECT_EQ(names(5), Names({{"x", true}, {"y", false}}));
}

TEST_F(ClientTableTest, AddFillsNullEntries) {
  c_dbc_get_userdata(5, "x");
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_get_userdata(5, "y");
  c_dbc_add_userdata(5, "y", &p);
  EXPECT_EQ(objects(), Objects({{5, true}}));
  EXPECT_EQ(names(5), Names({{"x", true}, {"y", true}}));
  EXPECT_EQ(root.at(5)->items.at("y")->name, "y");
}

TEST_F(ClientTableTest, ReleaseRemovesTheNameAndKeepsTheTable) {
  c_dbc_add_userdata(5, "x", &p);
  const DBClientTable* table = root.at(5);
  c_dbc_db_release(5, "x");
  EXPECT_EQ(names(5), Names());
  c_dbc_add_userdata(5, "y", &p);
  EXPECT_EQ(root.at(5), table);
}

TEST_F(ClientTableTest, ReleaseOfAnUnknownNameCreatesANullEntry) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_db_release(5, "y");
  c_dbc_db_release(5, "y");
  EXPECT_EQ(names(5), Names({{"x", true}, {"y", false}}));
}

TEST_F(ClientTableTest, ReleaseInAnUnknownObjectCreatesANullEntry) {
  c_dbc_db_release(5, "x");
  EXPECT_EQ(objects(), Objects({{5, false}}));
}

TEST_F(ClientTableTest, ReleaseAllRemovesTheObject) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_get_userdata(5, "y");
  c_dbc_add_userdata(6, "x", &p);
  c_dbc_db_release_all(5);
  EXPECT_EQ(objects(), Objects({{6, true}}));
}

TEST_F(ClientTableTest, ReleaseAllOfAnUnknownObjectCreatesANullEntry) {
  c_dbc_db_release_all(5);
  c_dbc_db_release_all(5);
  EXPECT_EQ(objects(), Objects({{5, false}}));
}

}  // namespace
