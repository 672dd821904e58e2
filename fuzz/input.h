// SPDX-License-Identifier: MIT
#ifndef CPP2C_FUZZ_INPUT_H
#define CPP2C_FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

// Reads an input as a sequence of choices. At its end, every number is 0 and every text is empty.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

  bool empty() const { return next_ == end_; }

  // Returns a number less than `limit`, which is at most 256. Takes one byte.
  unsigned int below(unsigned int limit) { return byte() % limit; }

  // Returns one of the elements. Takes one byte.
  template <typename Element, std::size_t Size>
  const Element& oneOf(const Element (&elements)[Size]) {
    static_assert(Size <= 256, "one byte selects the element");
    return elements[below(Size)];
  }

  // Takes four bytes, the most significant one first.
  std::int32_t word() {
    std::uint32_t bits = 0;
    for (int i = 0; i < 4; i++) bits = bits << 8 | byte();
    return static_cast<std::int32_t>(bits);
  }

  // Takes one byte for the length, then that many bytes.
  std::string bytes() {
    const auto wanted = static_cast<std::ptrdiff_t>(byte());
    const std::uint8_t* const first = next_;
    next_ += std::min(wanted, end_ - next_);
    return {first, next_};
  }

  // As bytes(), but ends before the first NUL.
  std::string text() { return bytes().c_str(); }

 private:
  std::uint8_t byte() { return next_ != end_ ? *next_++ : std::uint8_t{0}; }

  const std::uint8_t* next_;
  const std::uint8_t* end_;
};

#endif
