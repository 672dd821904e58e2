// SPDX-License-Identifier: MIT
#ifndef CPP2C_HOST_CONTROL_LIST_TEXT_H
#define CPP2C_HOST_CONTROL_LIST_TEXT_H

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "host/http/long_reply.h"

namespace host {

// The next element of a list as JSON text; nothing at the end.
using NextElement = std::function<std::optional<std::string>()>;

// A JSON object whose last member is a long array, as text in pieces. A piece ends after 64 KiB. It also ends
// after 10 ms, so that slow elements do not hold the loop longer than one of them takes.
class ListText {
 public:
  // `head` is the text before the first element: {"leaves":[
  ListText(std::string head, NextElement next) : head_(std::move(head)), next_(std::move(next)) {}

  Piece operator()();  // the next piece

 private:
  std::string head_;
  std::string separator_;  // before the next element
  NextElement next_;
};

}  // namespace host

#endif
