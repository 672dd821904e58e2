// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_UNREADABLE_TEXT_H
#define CPP2C_TESTS_SUPPORT_UNREADABLE_TEXT_H

#include <sys/mman.h>

// A string in inaccessible memory: reading it crashes the process.
class UnreadableText {
 public:
  UnreadableText() : page_(mmap(nullptr, kSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {}
  ~UnreadableText() { munmap(page_, kSize); }

  UnreadableText(const UnreadableText&) = delete;
  UnreadableText& operator=(const UnreadableText&) = delete;

  const char* c_str() const { return static_cast<const char*>(page_); }

 private:
  static constexpr unsigned int kSize = 4096;

  void* page_;
};

#endif
