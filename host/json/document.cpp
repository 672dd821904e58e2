// SPDX-License-Identifier: MIT
#include "host/json/document.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "host/start_error.h"
#include "include_c"

namespace {

using nlohmann::json;
using Pointer = json::json_pointer;

// Builds a document and refuses keys that stand twice in one object, of which the library keeps the last.
class DocumentBuilder final : public json::json_sax_t {
 public:
  explicit DocumentBuilder(const std::string& text) : text_(text) {}

  json take() { return std::move(root_); }

  bool null() override { return add(nullptr); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(value); }
  bool number_unsigned(number_unsigned_t value) override { return add(value); }
  bool number_float(number_float_t value, const string_t& /*token*/) override { return add(value); }
  bool string(string_t& value) override { return add(std::move(value)); }
  bool binary(binary_t& value) override { return add(std::move(value)); }
  bool start_object(std::size_t /*size*/) override { return open(json::object()); }
  bool start_array(std::size_t /*size*/) override { return open(json::array()); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& name) override;
  bool parse_error(std::size_t read, const std::string& token, const json::exception& error) override;

 private:
  struct Level {
    json* node;       // an object or a list
    std::string key;  // of the member that comes next
  };

  json* append(json value);
  bool add(json value) { return append(std::move(value)) != nullptr; }
  bool open(json value);
  bool close();
  Pointer place() const;

  const std::string& text_;
  json root_;
  std::vector<Level> levels_;
};

json* DocumentBuilder::append(json value) {
  if (levels_.empty()) return &(root_ = std::move(value));
  const Level& parent = levels_.back();
  if (parent.node->is_object()) return &((*parent.node)[parent.key] = std::move(value));
  parent.node->push_back(std::move(value));
  return &parent.node->back();
}

bool DocumentBuilder::open(json value) {
  levels_.push_back({append(std::move(value)), ""});
  return true;
}

bool DocumentBuilder::close() {
  levels_.pop_back();
  return true;
}

bool DocumentBuilder::key(string_t& name) {
  Level& object = levels_.back();
  object.key = std::move(name);
  if (object.node->contains(object.key)) Item(*object.node, place().to_string()).fail("stands twice");
  return true;
}

Pointer DocumentBuilder::place() const {
  Pointer place;
  for (const Level& level : levels_) {
    if (level.node->is_object()) {
      place /= level.key;
    } else {
      place /= level.node->size() - 1;
    }
  }
  return place;
}

// The error's own text quotes what was read last, which may be secret.
bool DocumentBuilder::parse_error(std::size_t read, const std::string& /*token*/,
                                  const json::exception& /*error*/) {
  const std::string before = text_.substr(0, std::max<std::size_t>(read, 1) - 1);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const auto column = before.size() - (before.rfind('\n') + 1) + 1;  // npos + 1 is 0
  throw Mistake{':' + std::to_string(line) + ':' + std::to_string(column) + ": not valid JSON"};
}

}  // namespace

void readDocument(const std::string& text, const std::string& source,
                  const std::function<void(const Item&)>& read) {
  try {
    DocumentBuilder builder(text);
    json::sax_parse(text, &builder);
    const json document = builder.take();
    read(Item(document));
  } catch (const Mistake& mistake) {
    throw StartError(C_RESULT_PARAM, source + mistake.text);
  }
}
