// SPDX-License-Identifier: MIT
#include "contextctl/completion/candidates.h"

#include <algorithm>
#include <iostream>
#include <set>
#include <sstream>

#include <CLI/CLI.hpp>

#include "contextctl/commands/session.h"
#include "contextctl/leaves/leaf.h"
#include "contextctl/system/failure.h"

namespace contextctl {
namespace {

using Names = std::vector<std::string>;

bool beginsWith(const std::string& text, const std::string& prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

// A command takes the options of those above it, too.
const CLI::Option* findOption(const CLI::App* app, const std::string& word) {
  for (; app != nullptr; app = app->get_parent())
    if (const CLI::Option* option = app->get_option_no_throw(word)) return option;
  return nullptr;
}

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

// Reads words as the parser would, to know where the next one stands.
class Reader {
 public:
  explicit Reader(const CLI::App& app) : app_(&app) {}

  void read(const std::string& word);

  const CLI::App& app() const { return *app_; }
  const std::string& control() const { return control_; }
  bool mayBeOption() const { return awaiting_ == nullptr && !only_arguments_; }
  bool mayBeCommand() const { return mayBeOption() && arguments_ == 0; }
  const CLI::Option* nextValue() const { return awaiting_ != nullptr ? awaiting_ : nextArgument(); }

 private:
  void readArgument(const std::string& word);
  const CLI::Option* nextArgument() const;

  const CLI::App* app_;
  const CLI::Option* awaiting_ = nullptr;  // the value of this option comes next
  bool only_arguments_ = false;
  size_t arguments_ = 0;
  std::string control_;
};

void Reader::read(const std::string& word) {
  const CLI::Option* option = mayBeOption() && beginsWith(word, "-") ? findOption(app_, word) : nullptr;
  if (awaiting_ != nullptr) {
    if (awaiting_->check_name("--control")) control_ = word;
    awaiting_ = nullptr;
  } else if (word == "--" && !only_arguments_) {
    only_arguments_ = true;
  } else if (option != nullptr) {
    if (option->get_items_expected_max() > 0) awaiting_ = option;
  } else {
    readArgument(word);
  }
}

void Reader::readArgument(const std::string& word) {
  const std::vector<const CLI::App*> commands = commandsOf(*app_);
  const auto command = std::find_if(commands.begin(), commands.end(),
                                    [&](const CLI::App* c) { return c->get_name() == word; });
  if (mayBeCommand() && command != commands.end()) {
    app_ = *command;
  } else {
    arguments_++;
  }
}

// The last argument may be there several times.
const CLI::Option* Reader::nextArgument() const {
  const auto arguments = app_->get_options([](const CLI::Option* o) { return o->get_positional(); });
  if (arguments.empty()) return nullptr;
  if (arguments_ < arguments.size()) return arguments[arguments_];
  return arguments.back()->get_items_expected_max() > 1 ? arguments.back() : nullptr;
}

// What the help calls a value.
std::string kindOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return type.empty() ? option.get_name() : type;
}

Names split(const std::string& text, char separator) {
  Names parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

Names namesInContext(const std::string& kind, const std::string& prefix, const Session& session) {
  std::set<std::string> names;
  if (kind == "OBJECT") {
    const Answer answer = session.get("/objects");
    for (const Record& object : answer.list("objects")) names.insert(object.text("name"));
  } else {
    for (const Leaf& leaf : getLeaves(session, prefix, false))
      names.insert(kind == "INSTANCE" ? leaf.name.substr(0, leaf.name.rfind('.') + 1) : leaf.name);
  }
  return {names.begin(), names.end()};
}

// Who waits for a completion waits for no slow context, and reads no complaints.
Names askContext(const std::string& kind, const std::string& prefix, const std::string& control) {
  Session::Wishes wishes;
  wishes.control = control.empty() ? defaultControl() : control;
  wishes.seconds = 1;
  try {
    return namesInContext(kind, prefix, Session(wishes, std::cout));
  } catch (const Failure&) {
    return {};
  }
}

bool isFile(const std::string& kind) {
  static const std::set<std::string> kinds = {"FILE", "LIBRARY", "PATH", "FOLDER", "FOLDER:..."};
  return kinds.count(kind) != 0;
}

bool isName(const std::string& kind) {
  static const std::set<std::string> kinds = {"LEAF", "PREFIX", "INSTANCE", "OBJECT"};
  return kinds.count(kind) != 0;
}

Names optionsOf(const CLI::App* app) {
  std::set<std::string> names;  // each command has a --help
  for (; app != nullptr; app = app->get_parent()) {
    for (const CLI::Option* option : app->get_options())
      for (const std::string& name : option->get_lnames()) names.insert("--" + name);
  }
  return {names.begin(), names.end()};
}

Names commandNamesOf(const CLI::App& app) {
  Names names;
  for (const CLI::App* command : commandsOf(app)) names.push_back(command->get_name());
  return names;
}

std::optional<Names> valuesFor(const Reader& reader, const std::string& word) {
  const CLI::Option* option = reader.nextValue();
  if (option == nullptr) return Names{};
  const std::string kind = kindOf(*option);
  if (isFile(kind)) return std::nullopt;
  if (isName(kind)) return askContext(kind, word, reader.control());
  return kind.find('|') == std::string::npos ? Names{} : split(kind, '|');
}

std::optional<Names> allAt(const Reader& reader, const std::string& word) {
  if (reader.mayBeOption() && beginsWith(word, "-")) return optionsOf(&reader.app());
  if (reader.mayBeCommand() && !commandsOf(reader.app()).empty()) return commandNamesOf(reader.app());
  return valuesFor(reader, word);
}

}  // namespace

std::optional<Names> findCandidates(const CLI::App& app, const Names& words) {
  if (words.empty()) return commandNamesOf(app);
  Reader reader(app);
  std::for_each(words.begin(), words.end() - 1, [&](const std::string& word) { reader.read(word); });
  std::optional<Names> names = allAt(reader, words.back());
  if (!names) return std::nullopt;
  names->erase(std::remove_if(names->begin(), names->end(),
                              [&](const std::string& name) { return !beginsWith(name, words.back()); }),
               names->end());
  return names;
}

}  // namespace contextctl
