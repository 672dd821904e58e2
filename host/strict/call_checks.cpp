// SPDX-License-Identifier: MIT
#include "host/strict/call_checks.h"

#include <charconv>
#include <cstdint>
#include <limits>

#include "binding/limits.h"
#include "host/config/config_service.h"
#include "host/config/name.h"
#include "host/heartbeat/heartbeat.h"
#include "host/registration/registry.h"
#include "util/similar_name.h"
#include "util/text.h"

namespace host {
namespace {

bool isBeyondInt(std::string_view text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number < 0 || number > std::numeric_limits<std::int32_t>::max();
}

std::string similarInstance(const Object& object, const std::string& name) {
  if (object.instances.count(name) != 0) return name;
  util::SimilarName similar(name, util::SimilarName::kMostErrors);
  for (const auto& [known, instance] : object.instances) similar.consider(known);
  return similar.best();
}

std::string similarLeafIn(const Object& object, const std::string& name) {
  util::SimilarName similar(name, util::SimilarName::kMostErrors);
  for (const Leaf& leaf : object.leaves) similar.consider(leaf.name);
  return similar.best();
}

// Compares instances and leaves one by one, not each leaf of each instance. Does not find a name with an
// error in the "." between both.
std::string similarLeaf(const Tree& tree, const std::string& fullname) {
  const std::string instance(parentName(fullname));
  const std::string leaf = fullname.substr(instance.size());
  util::SimilarName similar(fullname);
  for (const auto& [number, object] : tree.objects()) {
    const std::string similar_leaf = similarLeafIn(object, leaf);
    if (similar_leaf.empty()) continue;
    const std::string similar_instance = similarInstance(object, instance);
    if (!similar_instance.empty()) similar.consider(similar_instance + similar_leaf);
  }
  return similar.best();
}

std::string didYouMean(const std::string& name) {
  return "did you mean " + util::quoted(name) + "?";
}

}  // namespace

CallChecks::CallChecks(const Misuse& misuse, EventBase& base, ConfigService& config,
                       const Heartbeat& heartbeat, const Registry& registry)
    : misuse_(misuse),
      config_(config),
      heartbeat_(heartbeat),
      registry_(registry),
      loop_thread_(std::this_thread::get_id()),
      foreign_thread_calls_(misuse, base) {}

std::optional<int> CallChecks::before(const OperationCall& call) {
  if (std::this_thread::get_id() != loop_thread_) {
    foreign_thread_calls_.add(call.operation);  // no other check: their state belongs to the loop's thread
    return std::nullopt;
  }
  switch (call.operation) {
    case Operation::kDebugOut:
      checkDiagnostic(call);
      break;
    case Operation::kRecord:
      checkLength("the text of a log record", call.text, kRecordBuffer);
      break;
    case Operation::kSystemCall:
    case Operation::kSystemCall2:
    case Operation::kPopenCall:
      checkLength("a command", call.text, kCommandBuffer);
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

// The library compares types itself and reports a mismatch to the context only by this diagnostic. It means
// the leaf that the library looked up just before.
void CallChecks::checkDiagnostic(const OperationCall& call) {
  checkLength("a diagnostic", call.text, kDiagnosticBuffer);
  const Leaf* leaf = config_.findLeaf(last_leaf_);
  if (call.name != kTraceFile || call.text != kTypeMismatch || leaf == nullptr) return;
  misuse_.reportCall("the leaf " + util::quoted(last_leaf_) + " of type " + util::quoted(leaf->type->name) +
                         " is read or written under another type",
                     "types are compared byte by byte");
}

void CallChecks::checkLength(const char* what, std::string_view text, std::size_t buffer) const {
  const std::size_t longest = buffer - 2;
  if (text.size() != longest) return;
  misuse_.reportCall(std::string(what) + " fills its buffer of " + std::to_string(longest) +
                     " bytes and was probably truncated");
}

void CallChecks::checkLeaf(const std::string& fullname) {
  last_leaf_ = fullname;
  if (config_.findLeaf(fullname) != nullptr) return;
  const std::string similar = similarLeaf(config_.tree(), fullname);
  if (similar.empty()) return;
  misuse_.reportCall("there is no leaf " + util::quoted(fullname), didYouMean(similar));
}

void CallChecks::checkUint(const std::string& fullname, std::string_view value) const {
  const Leaf* leaf = config_.findLeaf(fullname);
  if (leaf == nullptr || leaf->type->name != std::string_view("uint") || !isBeyondInt(value)) return;
  misuse_.reportCall("the \"uint\" leaf " + util::quoted(fullname) +
                     " is set to a value above 2147483647, which is stored as a negative number");
}

void CallChecks::checkEvent(const std::string& event) const {
  util::SimilarName similar(event);
  for (const auto& registration : registry_.registrations()) {
    if (registration->kind != RegistrationKind::kEvent) continue;
    if (registration->key == event) return;
    similar.consider(registration->key);
  }
  if (similar.best().empty()) return;
  misuse_.reportCall("no observer is registered for the event " + util::quoted(event),
                     didYouMean(similar.best()));
}

void CallChecks::checkUnlock() const {
  if (heartbeat_.read().locks == 0) misuse_.reportCall("the heartbeat is unlocked, but not locked");
}

}  // namespace host
