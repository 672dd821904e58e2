// SPDX-License-Identifier: MIT
#include "host/strict/strict_calls.h"

#include <charconv>
#include <cstdint>
#include <limits>

#include "host/config/config_service.h"
#include "host/heartbeat/heartbeat.h"
#include "host/registration/registry.h"
#include "host/strict/nearest.h"
#include "util/text.h"

namespace {

// How long a text can be that has come through the library's buffers. One as long was probably longer; a
// longer one has come from C++, through none of them.
constexpr std::size_t kRecordRoom = 78;
constexpr std::size_t kDiagnosticRoom = 1022;
constexpr std::size_t kCommandRoom = 1022;

bool isBeyondInt(std::string_view text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number < 0 || number > std::numeric_limits<std::int32_t>::max();
}

std::string nearestLeaf(const Tree& tree, const std::string& fullname) {
  Nearest nearest(fullname);
  for (const auto& [number, object] : tree.objects()) {
    for (const auto& [instance, values] : object.instances) {
      for (const auto& [leaf, declaration] : object.leaves) nearest.consider(instance + leaf);
    }
  }
  return nearest.name();
}

}  // namespace

StrictCalls::StrictCalls(const Misuse& misuse, EventBase& base, ConfigService& config,
                         const Heartbeat& heartbeat, const Registry& registry)
    : misuse_(misuse),
      config_(config),
      heartbeat_(heartbeat),
      registry_(registry),
      loop_thread_(std::this_thread::get_id()),
      foreign_calls_(misuse, base) {}

std::optional<int> StrictCalls::before(const OperationCall& call) {
  if (std::this_thread::get_id() != loop_thread_) {
    foreign_calls_.add(call.operation);  // and nothing more: the rest belongs to the loop's thread
    return std::nullopt;
  }
  switch (call.operation) {
    case Operation::kDebugOut:
      checkDiagnostic(call);
      break;
    case Operation::kRecord:
      checkRoom("the text of a log record", call.text, kRecordRoom);
      break;
    case Operation::kSystemCall:
    case Operation::kSystemCall2:
    case Operation::kPopenCall:
      checkRoom("a command", call.text, kCommandRoom);
      break;
    case Operation::kGetNode:
      checkLeaf(std::string(call.name));
      break;
    case Operation::kSetValue:
      checkUint(std::string(call.name), call.text);
      break;
    case Operation::kNotify:
      checkEvent(std::string(call.name));
      break;
    case Operation::kUnlock:
      checkUnlock();
      break;
    default:
      break;
  }
  return std::nullopt;
}

void StrictCalls::checkDiagnostic(const OperationCall& call) {
  checkRoom("a diagnostic", call.text, kDiagnosticRoom);
  // The library compares types itself and tells the context no more than this. The leaf is the one that it
  // has looked for just before.
  const Leaf* leaf = config_.findLeaf(last_leaf_);
  if (call.name != "cpp2c" || call.text != "data type error!" || leaf == nullptr) return;
  misuse_.reportCall("the leaf " + util::quoted(last_leaf_) + " is read or written under another type than " +
                     util::quoted(leaf->type->name) + "; case and blanks count");
}

void StrictCalls::checkRoom(const char* what, std::string_view text, std::size_t room) const {
  if (text.size() != room) return;
  misuse_.reportCall(std::string(what) + " fills its buffer of " + std::to_string(room) +
                     " bytes and was probably cut");
}

void StrictCalls::checkLeaf(const std::string& fullname) {
  last_leaf_ = fullname;
  if (config_.findLeaf(fullname) != nullptr) return;
  const std::string nearest = nearestLeaf(config_.tree(), fullname);
  if (nearest.empty()) return;
  misuse_.reportCall("there is no leaf " + util::quoted(fullname) + "; " + util::quoted(nearest) +
                     " is near");
}

void StrictCalls::checkUint(const std::string& fullname, std::string_view value) const {
  const Leaf* leaf = config_.findLeaf(fullname);
  if (leaf == nullptr || leaf->type->name != std::string_view("uint") || !isBeyondInt(value)) return;
  misuse_.reportCall("the \"uint\" " + util::quoted(fullname) +
                     " is written above 2147483647, which it takes as a negative number");
}

void StrictCalls::checkEvent(const std::string& event) const {
  Nearest nearest(event);
  for (const auto& callback : registry_.callbacks()) {
    if (callback->kind != Kind::kEvent) continue;
    if (callback->key == event) return;
    nearest.consider(callback->key);
  }
  if (nearest.name().empty()) return;
  misuse_.reportCall("nobody observes the event " + util::quoted(event) + "; " +
                     util::quoted(nearest.name()) + " is near");
}

void StrictCalls::checkUnlock() const {
  if (heartbeat_.read().locks == 0) misuse_.reportCall("the heartbeat is unlocked, but not locked");
}
