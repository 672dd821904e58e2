// SPDX-License-Identifier: MIT
#include "contextctl/inspect/mangled_name.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>

#include "util/text.h"

namespace contextctl {
namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isUpper(char c) {
  return c >= 'A' && c <= 'Z';
}

bool isLower(char c) {
  return c >= 'a' && c <= 'z';
}

// Splits a mangled name into its codes. Identifiers are skipped by their lengths, so that no code is found in
// one. Numbers that are not lengths are recognised by the code before them.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  MangledName scan();

 private:
  char peek(size_t ahead = 0) const { return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0'; }
  bool follows(char c) const { return at_ > 0 && text_[at_ - 1] == c; }

  void skip(size_t size) { at_ += size; }
  void skipDigits() {
    while (isDigit(peek())) at_++;
  }
  bool skipNumberAndUnderscore();

  void readCode();
  void readIdentifier();
  void readSubstitution();
  void readTemplateParameterOrSpecialName();
  void readLiteral();
  void readBuiltinOrDestructor();

  std::string_view text_;
  size_t at_ = 0;
  MangledName found_;
};

MangledName Scanner::scan() {
  while (at_ < text_.size()) readCode();
  return found_;
}

void Scanner::readCode() {
  const char code = peek();
  if (isDigit(code)) return readIdentifier();
  if (code == 'S') return readSubstitution();
  if (code == 'T') return readTemplateParameterOrSpecialName();
  if (code == 'L') return readLiteral();
  if (code == 'D') return readBuiltinOrDestructor();
  if (code == 's' && peek(1) == 'p') found_.expansions++;
  skip(1);
  if (code == 'C' && isDigit(peek())) skip(1);  // constructor
  if (code == 'A' || code == 'E' || (code == 't' && at_ > 1 && text_[at_ - 2] == 'U'))
    skipNumberAndUnderscore();  // array, lambda, unnamed type
  if (code == 'f' && peek() == 'p') {
    skip(1);  // function parameter
    skipNumberAndUnderscore();
  }
}

// Skips "12_" and "_", but nothing else.
bool Scanner::skipNumberAndUnderscore() {
  const size_t begin = at_;
  skipDigits();
  const bool is_whole = peek() == '_';
  at_ = is_whole ? at_ + 1 : begin;
  return is_whole;
}

void Scanner::readIdentifier() {
  const bool is_tag = follows('B');
  const bool is_in_std = follows('t') && at_ > 1 && text_[at_ - 2] == 'S';
  size_t size = 0;
  for (; isDigit(peek()); at_++)
    if (size < text_.size()) size = size * 10 + static_cast<size_t>(peek() - '0');
  const std::string_view name = text_.substr(at_, size);
  found_.new_string = found_.new_string || (is_tag && name == "cxx11") || (is_in_std && name == "__cxx11");
  at_ += name.size();
}

// "Ss" is std::string, "Sb" std::basic_string. Others are short names of classes of std, or references.
void Scanner::readSubstitution() {
  const char kind = peek(1);
  if (isLower(kind)) {
    found_.old_string = found_.old_string || kind == 's' || kind == 'b';
    return skip(2);
  }
  found_.references++;
  skip(1);
  while (isDigit(peek()) || isUpper(peek())) at_++;
}

void Scanner::readTemplateParameterOrSpecialName() {
  skip(1);
  if (skipNumberAndUnderscore()) {
    found_.references++;
    return;
  }
  const char kind = peek();
  skip(1);
  for (int offsets = kind == 'h' ? 1 : kind == 'v' ? 2 : 0; offsets > 0; offsets--) {  // thunk
    if (peek() == 'n') skip(1);
    skipNumberAndUnderscore();
  }
}

// "Li5E" is a number, "L4Enum5E" an enumerator; "L" before any other name says that it is local to its file.
void Scanner::readLiteral() {
  skip(1);
  if (isLower(peek())) {
    skip(1);
  } else if (isDigit(peek())) {
    readIdentifier();
  } else {
    return;
  }
  const size_t begin = at_;
  if (peek() == 'n') skip(1);
  while (isDigit(peek()) || (peek() >= 'a' && peek() <= 'f')) at_++;
  at_ = peek() == 'E' ? at_ + 1 : begin;
}

void Scanner::readBuiltinOrDestructor() {
  const char kind = peek(1);
  skip(2);
  if (kind == 'p') found_.expansions++;
  if (kind == 'v') skipNumberAndUnderscore();  // vector
}

// Each level of a name takes two references to double its length, and a pack expansion repeats what it
// contains for each element of the pack. These limits allow some megabytes.
bool mayDemangle(const std::string& symbol) {
  constexpr size_t kLongest = 1024;
  constexpr int kMostReferences = 24, kMostExpansions = 1;
  if (symbol.size() > kLongest) return false;
  const MangledName name = scanMangledName(symbol);
  return name.references <= kMostReferences && name.expansions <= kMostExpansions;
}

}  // namespace

// Other names would be parsed as types: "i" is int, but also the name of a C function.
MangledName scanMangledName(std::string_view symbol) {
  if (!util::startsWith(symbol, "_Z")) return {};
  return Scanner(symbol.substr(2)).scan();
}

std::string demangle(const std::string& symbol) {
  struct Free {
    void operator()(char* text) const { std::free(text); }
  };
  if (!util::startsWith(symbol, "_Z") || !mayDemangle(symbol)) return symbol;
  int status = 0;
  const std::unique_ptr<char, Free> name(abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status));
  return name == nullptr ? symbol : name.get();
}

}  // namespace contextctl
