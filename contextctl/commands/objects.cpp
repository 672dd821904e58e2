// SPDX-License-Identifier: MIT
#include "contextctl/commands/commands.h"

#include <memory>
#include <optional>
#include <ostream>

#include "contextctl/commands/command_set.h"
#include "util/text.h"

namespace contextctl {
namespace {

// A common mistake: the name of an object or instance without its last dot. Numbers have none.
template <typename Request>
Answer requestFor(const std::string& name, Request request) {
  try {
    return request();
  } catch (const Failure& failure) {
    const bool is_name = name.find_first_not_of("-0123456789") != std::string::npos;
    if (failure.status() != kExitNo || !is_name || name.back() == '.') throw;
    throw Failure(kExitNo,
                  failure.what() + std::string("; the names of objects and instances end with \".\""));
  }
}

void listInstances(const Session& session, const std::string& object) {
  const Answer answer = requestFor(object, [&] {
    return session.connection().get("/instances", {{"object", object}});
  });
  session.show(answer, [&](std::ostream& out) {
    for (const std::string& name : answer.stringArray("instances")) out << util::printable(name) << '\n';
  });
}

void addInstance(const Session& session, const std::string& name) {
  session.show(requestFor(name, [&] { return session.connection().post("/instances", {{"name", name}}); }));
}

void deleteInstance(const Session& session, const std::string& name) {
  session.show(requestFor(name, [&] { return session.connection().remove("/instances", {{"name", name}}); }));
}

void showAttribute(const Session& session, const std::string& object) {
  const Answer answer = requestFor(object, [&] {
    return session.connection().get("/attribute", {{"object", object}});
  });
  session.show(answer,
               [&](std::ostream& out) { out << util::printable(answer.record.text("attribute")) << '\n'; });
}

void setAttribute(const Session& session, const std::string& object, int value) {
  session.show(requestFor(object, [&] {
    return session.connection().put("/attribute", {{"object", object}, {"value", std::int64_t{value}}});
  }));
}

void addInstances(CommandSet& commands) {
  const auto object = std::make_shared<std::string>();
  commands
      .add("instances", "List the instances of an object", "  contextctl instances Device.Interfaces.",
           [=](const Session& session) { listInstances(session, *object); })
      .require("OBJECT", *object, "Name or number of the object");
}

using InstanceCommand = void (*)(const Session& session, const std::string& name);

void addInstanceCommand(CommandSet& commands, const std::string& name, const std::string& purpose,
                        InstanceCommand run) {
  const auto instance = std::make_shared<std::string>();
  commands
      .add(name, purpose, "  contextctl " + name + " Device.Interfaces.wlan0.",
           [=](const Session& session) { run(session, *instance); })
      .require("INSTANCE", *instance, "Full name of the instance");
}

void addAttribute(CommandSet& commands) {
  struct Arguments {
    std::string object;
    std::optional<int> attribute;
  };
  const auto arguments = std::make_shared<Arguments>();
  commands
      .add("attribute", "Print or set the attribute of an object",
           "  contextctl attribute Device.Interfaces.\n  contextctl attribute 100 3",
           [=](const Session& session) {
             if (arguments->attribute) {
               setAttribute(session, arguments->object, *arguments->attribute);
             } else {
               showAttribute(session, arguments->object);
             }
           })
      .require("OBJECT", arguments->object, "Name or number of the object")
      .accept("ATTRIBUTE", arguments->attribute, "New attribute, an integer");
}

}  // namespace

void addObjectCommands(CommandSet& commands) {
  addInstances(commands);
  addInstanceCommand(commands, "add", "Add an instance", addInstance);
  addInstanceCommand(commands, "del", "Delete an instance", deleteInstance);
  addAttribute(commands);
}

}  // namespace contextctl
