// SPDX-License-Identifier: MIT
#include "host/json/document.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "include_c"
#include "util/error.h"

namespace host {
namespace {

using nlohmann::json;

constexpr std::size_t kMaxDepth = 16;
constexpr std::size_t kMaxMiB = 256;  // of a file

// Removes all content, one value at a time. The destructor of a value with content would allocate memory.
void clear(json& value) noexcept {
  if (auto* elements = value.get_ptr<json::array_t*>()) {
    for (; !elements->empty(); elements->pop_back()) clear(elements->back());
  } else if (auto* members = value.get_ptr<json::object_t*>()) {
    for (; !members->empty(); members->erase(members->begin())) clear(members->begin()->second);
  }
}

// Builds a document. The parser alone would keep the last of duplicate keys and take any depth.
class DocumentBuilder final : public json::json_sax_t {
 public:
  DocumentBuilder(const std::string& text, const std::string& source) : text_(text), source_(source) {}
  ~DocumentBuilder() override { clear(root_); }
  DocumentBuilder(const DocumentBuilder&) = delete;
  DocumentBuilder& operator=(const DocumentBuilder&) = delete;

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
    json* node;    // an object or an array
    json* member;  // of an object: the one whose value comes next
  };

  json* append(json value);
  bool add(json value) { return append(std::move(value)) != nullptr; }
  bool open(json value);
  bool close();
  [[noreturn]] void fail(const std::string& what) const;

  const std::string& text_;
  const std::string& source_;
  json root_;
  std::vector<Level> levels_;
};

json* DocumentBuilder::append(json value) {
  if (levels_.empty()) return &(root_ = std::move(value));
  const Level& parent = levels_.back();
  if (parent.node->is_object()) return &(*parent.member = std::move(value));
  parent.node->push_back(std::move(value));
  return &parent.node->back();
}

bool DocumentBuilder::open(json value) {
  json* node = append(std::move(value));
  if (levels_.size() == kMaxDepth) fail("nested more than " + std::to_string(kMaxDepth) + " deep");
  levels_.push_back({node, nullptr});
  return true;
}

bool DocumentBuilder::close() {
  levels_.pop_back();
  return true;
}

bool DocumentBuilder::key(string_t& name) {
  Level& object = levels_.back();
  const auto [member, is_new] = object.node->emplace(std::move(name), nullptr);
  object.member = &*member;
  if (!is_new) fail("duplicate key");
  return true;
}

// At the value that is being read.
void DocumentBuilder::fail(const std::string& what) const {
  const Level& parent = levels_.back();
  const json& value = parent.node->is_object() ? *parent.member : parent.node->back();
  JsonValue(value, root_, source_).fail(what);
}

// The parser's own message is not used: it quotes what was read last, which may be secret.
bool DocumentBuilder::parse_error(std::size_t read, const std::string& /*token*/,
                                  const json::exception& /*error*/) {
  const std::string before = text_.substr(0, std::max<std::size_t>(read, 1) - 1);
  const auto line = std::count(before.begin(), before.end(), '\n') + 1;
  const auto column = before.size() - (before.rfind('\n') + 1) + 1;  // npos + 1 is 0
  throw util::Error(C_RESULT_PARAM,
                    source_ + ':' + std::to_string(line) + ':' + std::to_string(column) + ": not valid JSON");
}

std::unique_ptr<json> parse(const std::string& text, const std::string& source) {
  auto root = std::make_unique<json>();
  DocumentBuilder builder(text, source);
  json::sax_parse(text, &builder);
  *root = builder.take();
  return root;
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void cannotRead(const std::string& name) {
  throw util::Error(C_RESULT_SYSTEM_CALL, name + ": cannot be read: " + std::strerror(errno));
}

[[noreturn]] void tooLarge(const std::string& name) {
  throw util::Error(C_RESULT_PARAM, name + ": larger than " + std::to_string(kMaxMiB) + " MiB");
}

}  // namespace

JsonDocument::JsonDocument(const std::string& text, std::string source)
    : source_(std::move(source)), root_(parse(text, source_)) {}

JsonDocument::~JsonDocument() {
  clear(*root_);
}

std::string readFile(const std::string& name) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(name.c_str(), "re"));
  if (file == nullptr) cannotRead(name);

  std::string text;
  char part[4096];
  std::size_t size = 0;
  while ((size = std::fread(part, 1, sizeof part, file.get())) > 0) {
    if (text.size() + size > kMaxMiB << 20) tooLarge(name);
    text.append(part, size);
  }
  if (std::ferror(file.get()) != 0) cannotRead(name);
  return text;
}

std::string objectText(std::vector<MemberText> members) {
  std::sort(members.begin(), members.end(),
            [](const MemberText& a, const MemberText& b) { return std::strcmp(a.first, b.first) < 0; });
  std::string text;
  for (const auto& [name, value] : members) text += (text.empty() ? "\"" : ",\"") + (name + ("\":" + value));
  return '{' + text + '}';
}

std::string lineOf(const json& value) {
  return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace host
