// SPDX-License-Identifier: MIT
#include "contextctl/completion/candidates.h"

#include <algorithm>
#include <set>
#include <sstream>

#include <CLI/CLI.hpp>

#include "contextctl/connection/connection.h"
#include "contextctl/leaves/leaf.h"
#include "contextctl/system/failure.h"
#include "util/text.h"

namespace contextctl {
namespace {

using Names = std::vector<std::string>;

// A command also takes the options of its parents.
const CLI::Option* findOption(const CLI::App* app, const std::string& word) {
  for (; app != nullptr; app = app->get_parent())
    if (const CLI::Option* option = app->get_option_no_throw(word)) return option;
  return nullptr;
}

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

// Parses words as CLI::App does, to find what may follow them.
class Reader {
 public:
  explicit Reader(const CLI::App& app) : app_(&app) {}

  void read(const std::string& word);

  const CLI::App& app() const { return *app_; }
  const std::string& socket() const { return socket_; }
  bool mayBeOption() const { return awaiting_ == nullptr && !only_arguments_; }
  bool mayBeCommand() const { return mayBeOption() && arguments_ == 0; }
  const CLI::Option* nextValue() const { return awaiting_ != nullptr ? awaiting_ : nextArgument(); }

 private:
  void readArgument(const std::string& word);
  const CLI::Option* nextArgument() const;

  const CLI::App* app_;
  const CLI::Option* awaiting_ = nullptr;  // the option whose value is the next word
  bool only_arguments_ = false;
  size_t arguments_ = 0;
  std::string socket_;
};

void Reader::read(const std::string& word) {
  const CLI::Option* option = mayBeOption() && util::startsWith(word, "-") ? findOption(app_, word) : nullptr;
  if (awaiting_ != nullptr) {
    if (awaiting_->check_name("--control")) socket_ = word;
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

// The last argument may be repeated.
const CLI::Option* Reader::nextArgument() const {
  const auto arguments = app_->get_options([](const CLI::Option* o) { return o->get_positional(); });
  if (arguments.empty()) return nullptr;
  if (arguments_ < arguments.size()) return arguments[arguments_];
  return arguments.back()->get_items_expected_max() > 1 ? arguments.back() : nullptr;
}

// The name of a value in the help.
std::string valueNameOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  return type.empty() ? option.get_name() : type;
}

Names split(const std::string& text, char separator) {
  Names parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

Names namesInContext(const std::string& value_name, const std::string& prefix, const Connection& connection) {
  std::set<std::string> names;
  if (value_name == "OBJECT") {
    const Answer answer = connection.get("/objects");
    for (const Record& object : answer.objectArray("objects")) names.insert(object.text("name"));
  } else {
    for (const Leaf& leaf : getLeaves(connection, prefix, false))
      names.insert(value_name == "INSTANCE" ? leaf.name.substr(0, leaf.name.rfind('.') + 1) : leaf.name);
  }
  return {names.begin(), names.end()};
}

// Completion must not wait for a slow context, and must not print error messages.
Names askContext(const std::string& value_name, const std::string& prefix, const std::string& socket) {
  constexpr double kSeconds = 1;
  try {
    return namesInContext(value_name, prefix,
                          Connection(socket.empty() ? defaultSocket() : socket, kSeconds));
  } catch (const Failure&) {
    return {};
  }
}

bool isFileName(const std::string& value_name) {
  static const std::set<std::string> names = {"FILE", "LIBRARY", "PATH", "FOLDER", "FOLDER:..."};
  return names.count(value_name) != 0;
}

bool isContextName(const std::string& value_name) {
  static const std::set<std::string> names = {"LEAF", "PREFIX", "INSTANCE", "OBJECT"};
  return names.count(value_name) != 0;
}

Names optionsOf(const CLI::App* app) {
  std::set<std::string> names;  // a set, as every command has --help
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
  const std::string value_name = valueNameOf(*option);
  if (isFileName(value_name)) return std::nullopt;
  if (isContextName(value_name)) return askContext(value_name, word, reader.socket());
  return value_name.find('|') == std::string::npos ? Names{} : split(value_name, '|');
}

std::optional<Names> wordsAt(const Reader& reader, const std::string& word) {
  if (reader.mayBeOption() && util::startsWith(word, "-")) return optionsOf(&reader.app());
  if (reader.mayBeCommand() && !commandsOf(reader.app()).empty()) return commandNamesOf(reader.app());
  return valuesFor(reader, word);
}

}  // namespace

std::optional<Names> findCandidates(const CLI::App& app, const Names& words) {
  if (words.empty()) return commandNamesOf(app);
  Reader reader(app);
  std::for_each(words.begin(), words.end() - 1, [&](const std::string& word) { reader.read(word); });
  std::optional<Names> names = wordsAt(reader, words.back());
  if (!names) return std::nullopt;
  names->erase(std::remove_if(names->begin(), names->end(),
                              [&](const std::string& name) { return !util::startsWith(name, words.back()); }),
               names->end());
  return names;
}

}  // namespace contextctl
