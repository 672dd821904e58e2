// SPDX-License-Identifier: MIT
// A service on the host context, with a configuration of any size. Needs the host context in LD_LIBRARY_PATH.
#ifndef CPP2C_BENCH_SERVICE_H
#define CPP2C_BENCH_SERVICE_H

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "include_c"

namespace bench {

inline constexpr int kRows = 1;
inline constexpr int kComputed = 2;
inline constexpr int kLeavesPerRow = 64;

inline std::string rowName(int row) {
  return "Device.Rows." + std::to_string(row) + '.';
}

inline std::string leafName(int leaf) {
  return rowName(leaf / kLeavesPerRow) + "Leaf" + std::to_string(leaf % kLeavesPerRow);
}

// The configuration of a product with so many leaves in instances of one object, and a computed leaf.
inline void writeConfiguration(const std::string& file, int leaves) {
  std::ofstream out(file);
  out << R"({"objects": [{"number": 2, "name": "Device.", "leaves": {"Now": {"type": "int", "computed": true}}},)"
      << R"({"number": 1, "name": "Device.Rows.", "dynamic": true, "leaves": {)";
  for (int i = 0; i < kLeavesPerRow; i++) {
    out << (i > 0 ? "," : "") << "\"Leaf" << i << R"(": {"type": "int"})";
  }
  out << "}, \"instances\": {";
  for (int leaf = 0; leaf < leaves; leaf++) {
    const bool first = leaf % kLeavesPerRow == 0;
    if (first) out << (leaf > 0 ? "}," : "") << '"' << rowName(leaf / kLeavesPerRow) << "\": {";
    out << (first ? "" : ",") << "\"Leaf" << leaf % kLeavesPerRow << "\": " << leaf;
  }
  out << "}}}]}";
}

// A running context with so many leaves.
class Service {
 public:
  explicit Service(int leaves, const char* option = "--") : option_(option) {
    if (mkdtemp(folder_.data()) == nullptr) throw std::runtime_error("cannot create a temporary folder");
    writeConfiguration(file("config.json"), leaves);
    start();
  }
  ~Service() {
    c_context_deinit();
    std::filesystem::remove_all(folder_);
  }
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  void start() const {
    const std::string config = file("config.json");
    const std::string log = file("log");
    const char* arguments[] = {"benchmark", "--config", config.c_str(), "--log-file", log.c_str(), option_};
    if (c_context_init(6, reinterpret_cast<std::uintptr_t>(arguments)) != C_RESULT_OK) {
      throw std::runtime_error("cannot start the context; see LD_LIBRARY_PATH");
    }
  }

 private:
  std::string file(const char* name) const { return folder_ + '/' + name; }

  const char* const option_;
  std::string folder_ = "/tmp/cpp2c_bench_XXXXXX";
};

}  // namespace bench

#endif
