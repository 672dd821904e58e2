// SPDX-License-Identifier: MIT
// watch, event, log.
#include <initializer_list>
#include <ostream>

#include "contextctl/commands/commands.h"
#include "contextctl/leaves/leaf.h"
#include "util/text.h"

namespace contextctl {
namespace {

// One item, one line: what is empty is left out.
void printLine(const Session& session, std::initializer_list<std::string> texts) {
  const char* gap = "";
  for (const std::string& text : texts) {
    if (text.empty()) continue;
    session.out() << gap << util::printable(text);
    gap = "  ";
  }
  session.out() << '\n';
}

}  // namespace

void watchChanges(const Session& session, const std::string& prefix, int count) {
  session.follow("/changes", leafQuery(prefix, session.reveal()), count, [&](const Record& change) {
    const std::string leaf = change.text("leaf");
    const std::string value = leaf.empty() ? "" : shown(change.value("value"));
    printLine(session,
              {change.text("time"), change.text("operation"), change.text("instance") + leaf, value});
  });
}

void sendEvent(const Session& session, const std::string& event, const std::string& data) {
  session.show(session.post("/events", {{"event", event}, {"data", data}}));
}

void followEvents(const Session& session, const std::string& event, int count) {
  session.follow("/events", {{"event", event}}, count, [&](const Record& item) {
    printLine(session, {item.text("time"), item.text("event"), item.text("data"), item.text("source")});
  });
}

void followLog(const Session& session, int count) {
  session.follow("/log", {}, count, [&](const Record& item) {
    printLine(session, {item.text("time"), item.text("level"), item.text("module"), item.text("text")});
  });
}

}  // namespace contextctl
