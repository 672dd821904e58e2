// SPDX-License-Identifier: MIT
#include "contextctl/inspect/mangled_name.h"

#include <string>

#include <gtest/gtest.h>

namespace contextctl {
namespace {

bool hasOldString(const std::string& symbol) {
  return scanMangledName(symbol).old_string;
}

TEST(MangledNameTest, AMangledNameIsDemangled) {
  EXPECT_EQ(demangle("_ZN1A4loadEi"), "A::load(int)");
}

TEST(MangledNameTest, OtherNamesAreUnchanged) {
  for (const char* name : {"i", "getInstance", "", "_Z", "_Znonsense", "_Z99f", "_ZN1A"})
    EXPECT_EQ(demangle(name), name);
}

TEST(MangledNameTest, ANameWithManyReferencesIsNotDemangled) {
  std::string name = "_Z1f1a";
  for (int i = 0; i < 24; i++) name += "S_";
  EXPECT_EQ(demangle(name).substr(0, 5), "f(a, ");
  EXPECT_EQ(demangle(name + "S_"), name + "S_");
}

TEST(MangledNameTest, ANameWithManyTemplateArgumentsIsNotDemangled) {
  std::string name = "_Z1fIiEvT_";
  for (int i = 0; i < 23; i++) name += "T_";
  EXPECT_EQ(demangle(name).substr(0, 12), "void f<int>(");
  EXPECT_EQ(demangle(name + "T_"), name + "T_");
}

TEST(MangledNameTest, ANameWithSeveralPackExpansionsIsNotDemangled) {
  EXPECT_EQ(demangle("_Z1fIJicEEvDpT_"), "void f<int, char>(int, char)");
  EXPECT_EQ(demangle("_Z1fIJicEEvDpT_DpT_"), "_Z1fIJicEEvDpT_DpT_");
}

TEST(MangledNameTest, ALongNameIsNotDemangled) {
  const std::string longest = "_Z1017" + std::string(1017, 'x') + "v";
  EXPECT_EQ(demangle(longest), std::string(1017, 'x') + "()") << "1024 bytes";
  const std::string longer = "_Z1018" + std::string(1018, 'x') + "v";
  EXPECT_EQ(demangle(longer), longer);
}

TEST(MangledNameTest, NumbersThatAreNotLengthsAreRecognised) {
  for (const char* name : {
           "_Z1fLi5EE3xSs",              // number as template argument: skipped, then identifier
           "_Z1fIL4Enum5EEv5aSsbc",      // enumerator
           "_ZN1A1fEA5_5aSsbc",          // array
           "_ZZ1fvENKUlvE5_clEv5aSsbc",  // lambda
           "_ZN1AUt5_C2Ev5aSsbc",        // unnamed type, constructor
           "_ZN1AD1Ev5aSsbc",            // destructor
           "_ZThn16_5aSsbcv",            // thunk
           "_ZTv0_n24_5aSsbcv",          // virtual thunk
           "_Z1fDv4_f5aSsbc",            // vector
           "_Z1fDTfp5_E5aSsbc",          // function parameter
           "_Z1fSA_5aSsbc",              // reference
           "_Z1fT10_5aSsbc",             // template parameter
           "_Z1ft5_Ssbc",                // unsigned short, which no number follows
       })
    EXPECT_FALSE(hasOldString(name)) << name;
}

TEST(MangledNameTest, AStringAfterANumberIsFound) {
  for (const char* name :
       {"_Z1fILi12EEvSs", "_Z1fIL4Enum12EEvSs", "_Z1fA12_Ss", "_ZZ1fvENKUlvE12_clESs", "_ZN1AUt12_C2ESs",
        "_ZN1AD1ESs", "_ZThn16_NK1AclESs", "_ZTv0_n24_N1A1fESs", "_Z1fDv16_fSs", "_Z1fDTfp12_ESs",
        "_Z1f1aS12_Ss", "_Z1fIiEvT12_Ss", "_Z1fSb", "_Z1fSA9B_Ss", "_Z1fSZ9B_Ss"})
    EXPECT_TRUE(hasOldString(name)) << name;
}

TEST(MangledNameTest, NewStringIsFoundByItsTagOrNamespace) {
  for (const char* name : {"_Z1fB5cxx11v", "_Z1fNSt7__cxx1112basic_stringE"}) {
    EXPECT_TRUE(scanMangledName(name).new_string) << name;
  }
  for (const char* name : {"_Z5cxx11v", "_Z1fB3tagv", "_Z7__cxx11v", "_Z1fSt4pair"}) {
    EXPECT_FALSE(scanMangledName(name).new_string) << name;
  }
}

TEST(MangledNameTest, AnInternalNameIsAnIdentifier) {
  EXPECT_TRUE(hasOldString("_ZL4nameSs"));
  EXPECT_FALSE(hasOldString("_ZL4aSsbv"));
}

TEST(MangledNameTest, ALengthBeyondTheNameEndsIt) {
  EXPECT_FALSE(hasOldString("_Z99fSs"));
  EXPECT_FALSE(hasOldString("_Z99999999999999999999999999999999fSs"));
}

}  // namespace
}  // namespace contextctl
