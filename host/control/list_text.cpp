// SPDX-License-Identifier: MIT
#include "host/control/list_text.h"

#include <chrono>

namespace host {
namespace {

constexpr std::size_t kPieceSize = 65536;
constexpr std::chrono::milliseconds kPieceTime{10};

}  // namespace

Piece ListText::operator()() {
  const auto end = std::chrono::steady_clock::now() + kPieceTime;
  std::string text = std::exchange(head_, "");
  do {
    const auto element = next_();
    if (!element) return {text + "]}", true};
    text += std::exchange(separator_, ",") + *element;
  } while (text.size() < kPieceSize && std::chrono::steady_clock::now() < end);
  return {std::move(text), false};
}

}  // namespace host
