// SPDX-License-Identifier: MIT
#include "host/control/list_text.h"

#include <chrono>
#include <thread>

#include <gtest/gtest.h>

namespace host {
namespace {

// Each element takes some time.
NextElement elements(int count, const std::string& text,
                     std::chrono::milliseconds time = std::chrono::milliseconds(0)) {
  return [=, left = count]() mutable -> std::optional<std::string> {
    if (left-- == 0) return std::nullopt;
    std::this_thread::sleep_for(time);
    return text;
  };
}

// The pieces, separated by '|'.
std::string piecesOf(ListText list) {
  std::string text;
  for (Piece piece = list();; piece = list()) {
    text += piece.text;
    if (piece.is_last) return text;
    text += '|';
  }
}

TEST(ListTextTest, ShortListIsOnePiece) {
  EXPECT_EQ(piecesOf(ListText("{\"x\":[", elements(0, ""))), "{\"x\":[]}");
  EXPECT_EQ(piecesOf(ListText("{\"x\":[", elements(1, "1"))), "{\"x\":[1]}");
  EXPECT_EQ(piecesOf(ListText("{\"x\":[", elements(3, "1"))), "{\"x\":[1,1,1]}");
}

TEST(ListTextTest, PieceIsNotMuchLongerThan64KiB) {
  const std::string element(10000, '1');
  const std::string seven =
      element + ',' + element + ',' + element + ',' + element + ',' + element + ',' + element + ',' + element;
  EXPECT_EQ(piecesOf(ListText("[", elements(15, element))),
            '[' + seven + "|," + seven + "|," + element + "]}");
}

TEST(ListTextTest, PieceOfExactly64KiBIsComplete) {
  const std::string element(65535, '1');
  EXPECT_EQ(piecesOf(ListText("[", elements(2, element))), '[' + element + "|," + element + "|]}");
}

TEST(ListTextTest, SlowElementEndsThePiece) {
  EXPECT_EQ(piecesOf(ListText("[", elements(3, "1", std::chrono::milliseconds(15)))), "[1|,1|,1|]}");
}

}  // namespace

}  // namespace host
