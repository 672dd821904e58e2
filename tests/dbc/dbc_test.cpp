// SPDX-License-Identifier: MIT
// The instance-name cache, used through the C interface.
#include <string>

#include <gtest/gtest.h>

#include "include_c"

namespace {

class DbcTest : public testing::Test {
 protected:
  DbcTest() { c_dbc_create(); }
  ~DbcTest() override { c_dbc_db_destory(); }

  // User data points to these. The cache must not read or free them.
  char p = 'p';
  char q = 'q';
};

TEST_F(DbcTest, StoredPointerIsReturned) {
  c_dbc_add_userdata(5, "x", &p);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &p);
}

TEST_F(DbcTest, SecondPointerReplacesTheFirst) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_add_userdata(5, "x", &q);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &q);
  EXPECT_EQ(p, 'p');
}

TEST_F(DbcTest, NullReplacesAPointer) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_add_userdata(5, "x", nullptr);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), nullptr);
}

TEST_F(DbcTest, UnknownNameHasNoPointer) {
  c_dbc_add_userdata(5, "x", &p);
  EXPECT_EQ(c_dbc_get_userdata(5, "y"), nullptr);
}

TEST_F(DbcTest, UnknownObjectHasNoPointer) {
  c_dbc_add_userdata(5, "x", &p);
  EXPECT_EQ(c_dbc_get_userdata(6, "x"), nullptr);
}

TEST_F(DbcTest, UnknownNameCanBeAddedAfterARead) {
  c_dbc_get_userdata(5, "x");
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_get_userdata(5, "y");
  c_dbc_add_userdata(5, "y", &q);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &p);
  EXPECT_EQ(c_dbc_get_userdata(5, "y"), &q);
}

TEST_F(DbcTest, ObjectsAreSeparate) {
  c_dbc_add_userdata(-5, "x", &p);
  c_dbc_add_userdata(5, "x", &q);
  EXPECT_EQ(c_dbc_get_userdata(-5, "x"), &p);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &q);
}

TEST_F(DbcTest, NamesAreComparedByteForByte) {
  c_dbc_add_userdata(5, "a", &p);
  EXPECT_EQ(c_dbc_get_userdata(5, "A"), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(5, "ab"), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(5, "a."), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(5, ""), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(5, "a"), &p);
}

TEST_F(DbcTest, NameIsCopied) {
  std::string name = "x";
  c_dbc_add_userdata(5, name.c_str(), &p);
  name = "y";
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &p);
}

TEST_F(DbcTest, NamesMayBeEmptyOrLong) {
  const std::string name(100000, 'n');
  c_dbc_add_userdata(5, "", &p);
  c_dbc_add_userdata(5, name.c_str(), &q);
  EXPECT_EQ(c_dbc_get_userdata(5, ""), &p);
  EXPECT_EQ(c_dbc_get_userdata(5, name.c_str()), &q);
}

TEST_F(DbcTest, CreateTwiceReturnsTheSameCacheWithItsContents) {
  void* cache = c_dbc_create();
  c_dbc_add_userdata(5, "x", &p);
  EXPECT_EQ(c_dbc_create(), cache);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &p);
}

TEST_F(DbcTest, ReleaseRemovesOneName) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_add_userdata(5, "y", &q);
  c_dbc_add_userdata(6, "x", &q);
  c_dbc_db_release(5, "x");
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(5, "y"), &q);
  EXPECT_EQ(c_dbc_get_userdata(6, "x"), &q);
  EXPECT_EQ(p, 'p');
}

TEST_F(DbcTest, ReleaseOfAnUnknownNameChangesNothing) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_db_release(5, "y");
  c_dbc_db_release(6, "x");
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &p);
}

TEST_F(DbcTest, ReleasedNameCanBeAddedAgain) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_db_release(5, "x");
  c_dbc_db_release(5, "x");
  c_dbc_add_userdata(5, "x", &q);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &q);
}

TEST_F(DbcTest, ReleaseAllRemovesOneObject) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_add_userdata(5, "y", &p);
  c_dbc_add_userdata(6, "x", &q);
  c_dbc_db_release_all(5);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(5, "y"), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(6, "x"), &q);
  EXPECT_EQ(p, 'p');
}

TEST_F(DbcTest, ReleaseAllRemovesUnknownNamesThatWereRead) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_get_userdata(5, "y");
  c_dbc_db_release_all(5);
  c_dbc_add_userdata(5, "y", &q);
  EXPECT_EQ(c_dbc_get_userdata(5, "y"), &q);
}

TEST_F(DbcTest, ReleaseAllOfAnUnknownObjectChangesNothing) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_db_release_all(6);
  c_dbc_db_release_all(6);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), &p);
}

TEST_F(DbcTest, DestroyRemovesEverything) {
  c_dbc_add_userdata(5, "x", &p);
  c_dbc_add_userdata(6, "y", &q);
  c_dbc_get_userdata(7, "z");
  c_dbc_get_userdata(6, "z");
  c_dbc_db_destory();
  c_dbc_create();
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), nullptr);
  EXPECT_EQ(c_dbc_get_userdata(6, "y"), nullptr);
  EXPECT_EQ(p, 'p');
  EXPECT_EQ(q, 'q');
}

TEST_F(DbcTest, FunctionsDoNothingBetweenDestroyAndCreate) {
  c_dbc_db_destory();
  c_dbc_add_userdata(5, "x", &p);
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), nullptr);
  c_dbc_db_release(5, "x");
  c_dbc_db_release_all(5);
  c_dbc_create();
  EXPECT_EQ(c_dbc_get_userdata(5, "x"), nullptr)
      << "A name that was added without a cache must not be stored.";
}

TEST_F(DbcTest, DestroyTwiceIsHarmless) {
  c_dbc_db_destory();
  c_dbc_db_destory();
  EXPECT_NE(c_dbc_create(), nullptr);
}

}  // namespace
