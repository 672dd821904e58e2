// SPDX-License-Identifier: MIT
#include "contextctl/commands/session.h"

#include <unistd.h>

#include <cstdlib>
#include <ostream>

#include "contextctl/system/failure.h"
#include "contextctl/system/interrupt.h"

namespace contextctl {
namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

Answer Session::get(const std::string& path, const Client::Query& query) const {
  return readAnswer(getText(path, query));
}

std::string Session::getText(const std::string& path, const Client::Query& query) const {
  return client_.request("GET", path, query, "");
}

Answer Session::put(const std::string& path, const Members& members) const {
  return readAnswer(client_.request("PUT", path, {}, writeObject(members)));
}

Answer Session::post(const std::string& path, const Members& members) const {
  return readAnswer(client_.request("POST", path, {}, writeObject(members)));
}

Answer Session::remove(const std::string& path, const Client::Query& query) const {
  return readAnswer(client_.request("DELETE", path, query, ""));
}

void Session::show(const Answer& answer, const std::function<void(std::ostream& out)>& in_words) const {
  if (json()) {
    out_ << answer.json << '\n';
  } else if (in_words) {
    in_words(out_);
  }
}

void Session::follow(const std::string& path, const Client::Query& query, int count,
                     const std::function<void(const Record& item)>& on_item) const {
  const Interrupt interrupt;
  int seen = 0;
  client_.follow(path, query, interrupt, [&](const std::string& item) {
    const Answer answer = readAnswer(item);
    show(answer, [&](std::ostream&) { on_item(answer.record); });
    flush(out_);
    return ++seen != count;
  });
}

void flush(std::ostream& out) {
  out.flush();
  if (!out) throw Failure(kExitNoAnswer, "the output cannot be written");
}

std::string defaultControl() {
  std::string named = environment("CPP2C_CONTROL");
  const std::string folder = environment("XDG_RUNTIME_DIR");
  if (!named.empty()) return named;
  if (!folder.empty()) return folder + "/cpp2c.sock";
  return getuid() == 0 ? "/run/cpp2c.sock" : "/tmp/cpp2c-" + std::to_string(getuid()) + ".sock";
}

}  // namespace contextctl
