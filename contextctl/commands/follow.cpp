// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <initializer_list>
#include <memory>
#include <ostream>

#include "contextctl/commands/command_set.h"
#include "contextctl/leaves/leaf.h"
#include "util/text.h"

namespace contextctl {
namespace {

// Prints one item on one line; empty texts are left out.
void printLine(const Session& session, std::initializer_list<std::string> texts) {
  const char* gap = "";
  for (const std::string& text : texts) {
    if (text.empty()) continue;
    session.out() << gap << util::printable(text);
    gap = "  ";
  }
  session.out() << '\n';
}

void followChanges(const Session& session, const std::string& prefix, int count) {
  session.follow("/changes", leafQuery(prefix, session.reveal()), count, [&](const Record& change) {
    const std::string leaf = change.text("leaf");
    const std::string value = leaf.empty() ? "" : valueText(change.value("value"));
    printLine(session,
              {change.text("time"), change.text("operation"), change.text("instance") + leaf, value});
  });
}

void followEvents(const Session& session, const std::string& event, int count) {
  session.follow("/events", {{"event", event}}, count, [&](const Record& item) {
    printLine(session, {item.text("time"), item.text("event"), item.text("data"), item.text("source")});
  });
}

void followLog(const Session& session, const std::string&, int count) {
  session.follow("/log", {}, count, [&](const Record& item) {
    printLine(session, {item.text("time"), item.text("level"), item.text("module"), item.text("text")});
  });
}

// One stream of the context and the command that follows it.
struct Stream {
  const char* name;  // of the command in the group "follow"
  const char* purpose;
  const char* examples;  // arguments, one line each
  const char* items;
  const char* filter;  // argument that selects items; null: none
  const char* filter_meaning;
  void (*follow)(const Session& session, const std::string& filter, int count);
};

constexpr Stream kChanges = {"changes",
                             "Follow changes of the configuration tree",
                             "Device.Interfaces.\n--count 1",
                             "changes",
                             "PREFIX",
                             "Prefix of the full names; default: all changes",
                             followChanges};
constexpr Stream kEvents = {"events",    "Follow events", "link.down --count 1",
                            "events",    "EVENT",         "Name of the event; default: all events",
                            followEvents};
constexpr Stream kLog = {"log", "Follow the log", "--json | jq .text", "log records", nullptr, "", followLog};

std::string exampleLines(const std::string& command, const std::string& arguments) {
  const std::string start = "  contextctl " + command + ' ';
  std::string lines = start;
  for (const char c : arguments) c == '\n' ? lines += '\n' + start : lines += c;
  return lines;
}

Command addFollower(CommandSet& commands, const std::string& words, const std::string& purpose,
                    const Stream& stream) {
  struct Arguments {
    std::string filter;
    int count = 0;
  };
  const auto arguments = std::make_shared<Arguments>();
  Command follower = commands.add(words, purpose, exampleLines(words, stream.examples),
                                  [arguments, follow = stream.follow](const Session& session) {
                                    follow(session, arguments->filter, arguments->count);
                                  });
  if (stream.filter != nullptr) follower.accept(stream.filter, arguments->filter, stream.filter_meaning);
  return follower.count(arguments->count, stream.items);
}

// Adds the command under an older name.
void addAlias(CommandSet& commands, const std::string& words, const Stream& stream) {
  const std::string purpose = "Alias of " + util::quoted(std::string("follow ") + stream.name);
  addFollower(commands, words, purpose, stream).inSection("Aliases");
}

void sendEvent(const Session& session, const std::string& event, const std::string& data) {
  session.show(session.connection().post("/events", {{"event", event}, {"data", data}}));
}

void addSend(CommandSet& commands) {
  struct Arguments {
    std::string event, data;
  };
  const auto arguments = std::make_shared<Arguments>();
  commands
      .add("event send", "Send an event",
           "  contextctl event send link.down eth0\n  contextctl event send reload",
           [=](const Session& session) { sendEvent(session, arguments->event, arguments->data); })
      .require("EVENT", arguments->event, "Name of the event")
      .accept("DATA", arguments->data, "Data of the event; default: none");
}

}  // namespace

void addFollowCommands(CommandSet& commands) {
  commands.addGroup("follow", "Follow changes, events or the log until Ctrl-C");
  for (const Stream* stream : {&kChanges, &kEvents, &kLog})
    addFollower(commands, std::string("follow ") + stream->name, stream->purpose, *stream);
  addAlias(commands, "watch", kChanges);
  addAlias(commands, "log", kLog);
}

void addEventCommands(CommandSet& commands) {
  commands.addGroup("event", "Send an event");
  addSend(commands);
  addAlias(commands, "event follow", kEvents);
}

}  // namespace contextctl
