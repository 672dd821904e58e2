// SPDX-License-Identifier: MIT
// Reads and writes of typed values: the library stores the same bytes, returns the same results and makes the
// same calls of the context as a model.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>

#include "fuzz/expect.h"
#include "fuzz/harness.h"
#include "fuzz/input.h"
#include "fuzz/recording_session.h"

namespace {

const char* const kTypes[] = {"str",  "ipaddr", "macaddr", "pwd", "base64", "datetime", "int",
                              "uint", "bool",   "",        "INT", "int ",   "string",   "boolean"};
constexpr char kFill = '#';          // a byte that the library must not change
constexpr std::size_t kCanary = 12;  // bytes behind each buffer
constexpr const char* kName = "A.B";

bool isText(const std::string& type) {
  return type == "str" || type == "ipaddr" || type == "macaddr" || type == "pwd" || type == "base64" ||
         type == "datetime";
}

bool isNumber(const std::string& type) {
  return type == "int" || type == "uint";
}

std::string bytesOf(std::int32_t word) {
  std::string bytes(sizeof word, '\0');
  std::memcpy(bytes.data(), &word, sizeof word);
  return bytes;
}

// Returns the number at the start of a text, or nothing if it does not fit in 32 bits.
std::optional<std::int32_t> numberInModel(const std::string& text) {
  std::size_t i = text.find_first_not_of(" \t\n\v\f\r");
  if (i == std::string::npos) return 0;
  const bool negative = text[i] == '-';
  if (negative || text[i] == '+') i++;
  std::int64_t number = 0;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; i++) {
    number = number * 10 + (negative ? '0' - text[i] : text[i] - '0');
    if (number != static_cast<std::int32_t>(number)) return std::nullopt;
  }
  return static_cast<std::int32_t>(number);
}

// One read or write, and what is wrong with it.
struct Access {
  explicit Access(Input& input)
      : type(input.oneOf(kTypes)), leaf_type(input.below(4) != 3 ? type : input.oneOf(kTypes)) {
    const unsigned int obstacles = input.below(4) == 3 ? input.below(256) : 0;
    no_name = (obstacles & 1) != 0;
    no_type = (obstacles & 2) != 0;
    no_data = (obstacles & 4) != 0;
    no_length = (obstacles & 8) != 0;
    no_context = (obstacles & 16) != 0;
    no_service = (obstacles & 32) != 0;
    no_leaf = (obstacles & 64) != 0;
  }

  std::string type;
  std::string leaf_type;
  bool no_name, no_type, no_data, no_length, no_context, no_service, no_leaf;

  const char* nameArgument() const { return no_name ? nullptr : kName; }
  const char* typeArgument() const { return no_type ? nullptr : type.c_str(); }
};

// What a data provider sets as its value.
struct Answer {
  bool given = false;
  std::string type;
  std::string data;
};

void answerRequest(int /*id*/, const char* /*instance*/, const char* /*leaf*/, void* user, void* handle) {
  auto* answer = static_cast<Answer*>(user);
  if (answer->given) c_cfm_data_provider_set(handle, answer->type.c_str(), answer->data.data());
}

class TypedAccess {
 public:
  explicit TypedAccess(Input& input) : input_(input) {
    c_cfm_data_provider_regist(1, answerRequest, &answer_);
    proxy().calls.take();
  }

  void step() {
    switch (input_.below(5)) {
      case 0:
        return write(Access(input_));
      case 1:
        return read(Access(input_));
      case 2:
        return parseFlag();
      case 3:
        return answer();
      case 4:
        return parseFlagInPlace();
    }
  }

 private:
  ContextProxy& proxy() { return session_.proxy; }

  void expect(const std::string& call) { expected_.push_back(call); }

  int refuseInModel(const Access& access, int code, const char* text) {
    expect(access.no_context ? "getInstance(null)" : diagnostic(text));
    return code;
  }

  // Returns what the model returns before it looks at the value; nothing if the leaf is open.
  std::optional<int> openInModel(const Access& access, unsigned int length) {
    if (access.no_name) return refuseInModel(access, C_RESULT_PARAM, "fullname is NULL, error!");
    if (access.no_type) return refuseInModel(access, C_RESULT_PARAM, "type is NULL, error!");
    if (access.no_data || length == 0) {
      return refuseInModel(access, C_RESULT_PARAM, "data is NULL or data_len is 0, error!");
    }
    expect(access.no_context ? "getInstance(null)" : "context.getCfm()");
    if (access.no_context) return refuseInModel(access, C_RESULT_NOT_INIT, "Not inited, error!");
    if (access.no_service) return refuseInModel(access, C_RESULT_NOT_INIT, "not inited, error!");
    expect("cfm.getNode('A.B')");
    if (access.no_leaf) return refuseInModel(access, C_RESULT_NOT_INIT, "malloc memory failed!");
    expect("node.getType()");
    if (access.type == access.leaf_type) return std::nullopt;
    refuseInModel(access, C_RESULT_PARAM, "data type error!");
    return release(C_RESULT_PARAM);
  }

  int release(int code) {
    expect("cfm.releaseNode('A.B')");
    return code;
  }

  // Returns the text that the model writes; nothing if it writes none.
  static std::optional<std::string> writtenInModel(const std::string& type, const std::string& data) {
    if (isText(type)) return data.c_str();
    std::int32_t word;
    std::memcpy(&word, data.data(), sizeof word);
    if (isNumber(type)) return std::to_string(word);
    if (type == "bool") return word == 0 ? "false" : "true";
    return std::nullopt;
  }

  int writeInModel(const Access& access, const std::string& data, unsigned int length, int option,
                   int service_result) {
    if (const auto refused = openInModel(access, length)) return *refused;
    release(C_RESULT_OK);
    const auto text = writtenInModel(access.type, data);
    if (!text) return C_RESULT_OK;
    expect("cfm.setValue('A.B', '" + *text + "', " + std::to_string(option) + ")");
    return service_result;
  }

  // Returns the bytes of `buffer` after a read of `length` bytes at its start.
  std::string readTextInModel(const Access& access, const Leaf& leaf, unsigned int length,
                              std::string buffer) {
    expect("node.getLength()");
    if (length < leaf.length) refuseInModel(access, 0, " data length of string is tool small!");
    expect("node.getValue()");
    std::string text = leaf.value.c_str();
    text.resize(length - 1, '\0');
    return buffer.replace(0, text.size(), text);
  }

  int readInModel(const Access& access, const Leaf& leaf, unsigned int length, std::string& buffer) {
    if (const auto refused = openInModel(access, length)) return *refused;
    if (isText(access.type)) buffer = readTextInModel(access, leaf, length, buffer);
    if (isNumber(access.type)) {
      if (length < 4) {
        return release(refuseInModel(access, C_RESULT_PARAM, "warning!, data size is too small!"));
      }
      expect("node.getValue()");
      const auto number = numberInModel(leaf.value.c_str());
      buffer = number ? buffer.replace(0, 4, bytesOf(*number)) : "";
    }
    if (access.type == "bool") {
      expect("node.getValue()");
      buffer.replace(0, 4, bytesOf(leaf.value == "false" || leaf.value == "0" ? 0 : 1));
    }
    return release(C_RESULT_OK);
  }

  // Puts the context into the state that the access needs, until the end of the scope.
  class Setting {
   public:
    Setting(ContextProxy& proxy, const Access& access, const Leaf& leaf) : proxy_(proxy) {
      if (!access.no_leaf) proxy.context.cfm.leaves[kName] = leaf;
      if (access.no_service) proxy.context.missing = {"getCfm"};
      if (access.no_context) releaseContext(nullptr);
      if (access.no_context) proxy.instance = nullptr;
      proxy.calls.take();
    }
    ~Setting() {
      proxy_.context.cfm.leaves.clear();
      proxy_.context.missing.clear();
      proxy_.instance = &proxy_.context;
      getContext();
      proxy_.calls.take();
    }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

   private:
    ContextProxy& proxy_;
  };

  void checkCalls(const std::string& function) {
    requireEqual(proxy().calls.take(), expected_, "the calls of the context by " + function);
    require(proxy().context.cfm.nodes_on_loan.empty(), "every node is released");
    expected_.clear();
  }

  // The data of a write: a string, or a word at any alignment.
  std::string data(const std::string& type) { return isText(type) ? input_.bytes() : bytesOf(input_.word()); }

  void write(const Access& access) {
    const std::string value = data(access.type);
    const unsigned int length = access.no_length ? 0 : 1 + input_.below(8);
    const int option = input_.word();
    const int service_result = input_.below(2) == 1 ? C_RESULT_TIMEOUT : 0;
    const Setting setting(proxy(), access, {access.leaf_type, "", 0});
    proxy().calls.results["cfm.setValue"] = service_result;

    const unsigned int choice = input_.below(8);
    std::string moved = std::string(choice % 4, kFill) + value;
    char* data_at = moved.data() + moved.size() - value.size();
    std::string later = value;  // the data once the service has the node back
    if (choice >= 4) later = data(access.type);
    later.resize(value.size(), '\0');
    proxy().calls.on_call = [&](const std::string& call) {
      if (call == "cfm.releaseNode('A.B')") later.copy(data_at, later.size());
    };
    const char* at = access.no_data ? nullptr : data_at;
    const int result = c_cfm_set_value(access.nameArgument(), option, access.typeArgument(), at, length);
    proxy().calls.on_call = nullptr;
    // A number is read before the node is released, a text or a flag after that.
    const std::string& read_data = isNumber(access.type) ? value : later;
    requireEqual(result, writeInModel(access, read_data, length, option, service_result),
                 "result of c_cfm_set_value()");
    checkCalls("c_cfm_set_value()");
    if (result == C_RESULT_OK) readBack(access.type, value);
  }

  // A number that has been written is read as the same number.
  void readBack(const std::string& type, const std::string& value) {
    if (!isNumber(type)) return;
    const std::string text = writtenInModel(type, value).value();
    proxy().context.cfm.leaves[kName] = {type, text, static_cast<unsigned int>(text.size())};
    std::string buffer(4, kFill);
    c_cfm_get_value(kName, type.c_str(), buffer.data(), 4);
    requireEqual(buffer, value, "the number read after " + text + " was written");
    proxy().calls.take();
  }

  void read(const Access& access) {
    const std::string value = input_.bytes();
    const unsigned int length = access.no_length ? 0 : 1 + input_.below(255);
    const auto reported = input_.below(4) == 3 ? input_.below(256) : static_cast<unsigned int>(value.size());
    const Leaf leaf = {access.leaf_type, value, reported};
    const Setting setting(proxy(), access, leaf);

    const std::size_t before = input_.below(4);
    std::string buffer(before + length + kCanary, kFill);
    std::string expected = buffer.substr(before);
    void* at = access.no_data ? nullptr : buffer.data() + before;
    const int result = c_cfm_get_value(access.nameArgument(), access.typeArgument(), at, length);
    requireEqual(result, readInModel(access, leaf, length, expected), "result of c_cfm_get_value()");
    checkCalls("c_cfm_get_value()");
    if (expected.empty()) expected = buffer.substr(before, 4) + std::string(length - 4 + kCanary, kFill);
    requireEqual(buffer, std::string(before, kFill) + expected, "the buffer of c_cfm_get_value()");
  }

  void parseFlag() {
    static const char* const kFlags[] = {"true", "false", "True", "1", ""};
    std::string text = input_.oneOf(kFlags);
    if (text.empty()) text = input_.text();
    const bool known = text == "true" || text == "false";
    int flags[3] = {7, 7, 7};
    const int result = c_cfm_str2bool(text.c_str(), &flags[1]);
    requireEqual<int>(result, known ? C_RESULT_OK : C_RESULT_PARAM, "result of c_cfm_str2bool()");
    requireEqual(flags[1], text == "true" ? 1 : 0, "the flag of " + shown(text));
    require(flags[0] == 7 && flags[2] == 7, "c_cfm_str2bool() stores one word");
    if (!known) {
      expect(diagnostic(text));
      expect(diagnostic("c_cfm_str2bool: Leave: param error!\n"));
    }
    checkCalls("c_cfm_str2bool()");
  }

  // The text and the flag may share the same memory.
  void parseFlagInPlace() {
    const bool is_true = input_.below(2) == 1;
    int memory[2];
    std::memcpy(memory, is_true ? "true\0\0\0" : "false\0\0", sizeof memory);
    requireEqual<int>(c_cfm_str2bool(reinterpret_cast<const char*>(memory), memory), C_RESULT_OK,
                      "result of c_cfm_str2bool() in place");
    requireEqual(memory[0], is_true ? 1 : 0, "the flag in place of its text");
    checkCalls("c_cfm_str2bool()");
  }

  void answer() {
    const std::string type = input_.oneOf(kTypes);
    const bool is_word = isNumber(type) || type == "bool";
    answer_ = {input_.below(4) != 3, type, is_word ? bytesOf(input_.word()) : input_.bytes()};
    if (answer_.given && is_word) {
      answered_ = writtenInModel("int", answer_.data).value();
    } else if (answer_.given) {
      answered_ = answer_.data.c_str();
    }
    requireEqual(proxy().context.cfm.providers.front()->dataGet(1, "A.", "B"), answered_,
                 "the computed value of type " + shown(type));
    checkCalls("a data provider");
  }

  RecordingSession session_;
  Input& input_;
  Calls expected_;
  Answer answer_;
  std::string answered_;  // in the model
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  TypedAccess access(input);
  while (!input.empty()) access.step();
  return 0;
}
