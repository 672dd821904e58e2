// SPDX-License-Identifier: MIT
#include "contextctl/session.h"

#include <unistd.h>

#include <cstdlib>
#include <ostream>

#include "contextctl/failure.h"
#include "contextctl/interrupt.h"

namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

Answer Session::get(const std::string& path, const Client::Query& query) const {
  return get(path, query, reveal());
}

Answer Session::get(const std::string& path, const Client::Query& query, bool reveal) const {
  Client::Query whole = query;
  whole.emplace_back("reveal", reveal ? "true" : "");
  return ask("GET", path, whole, "", reveal);
}

std::string Session::getText(const std::string& path) const {
  return client_.request("GET", path, {}, "");
}

Answer Session::put(const std::string& path, const Members& members) const {
  return ask("PUT", path, {}, writeObject(members), reveal());
}

Answer Session::post(const std::string& path, const Members& members) const {
  return ask("POST", path, {}, writeObject(members), reveal());
}

Answer Session::remove(const std::string& path, const Client::Query& query) const {
  return ask("DELETE", path, query, "", reveal());
}

Answer Session::ask(const std::string& method, const std::string& path, const Client::Query& query,
                    const std::string& body, bool reveal) const {
  return readAnswer(client_.request(method, path, query, body), reveal);
}

void Session::report(const Answer& answer) const {
  if (json()) out_ << answer.json << '\n';
}

void Session::follow(const std::string& path, const Client::Query& query, int count,
                     const std::function<void(const Record& item)>& on_item) const {
  const Interrupt interrupt;
  int seen = 0;
  client_.follow(path, query, interrupt, [&](const std::string& item) {
    const Answer answer = readAnswer(item, reveal());
    if (json())
      out_ << answer.json << '\n';
    else
      on_item(answer.record);
    flush(out_);
    return ++seen != count;
  });
}

void flush(std::ostream& out) {
  out.flush();
  if (!out) throw Failure(kExitNoAnswer, "the output cannot be written");
}

std::string defaultControl() {
  const std::string named = environment("CPP2C_CONTROL"), folder = environment("XDG_RUNTIME_DIR");
  if (!named.empty()) return named;
  if (!folder.empty()) return folder + "/cpp2c.sock";
  return getuid() == 0 ? "/run/cpp2c.sock" : "/tmp/cpp2c-" + std::to_string(getuid()) + ".sock";
}
