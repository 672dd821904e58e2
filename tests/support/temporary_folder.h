// SPDX-License-Identifier: MIT
#ifndef CPP2C_TESTS_SUPPORT_TEMPORARY_FOLDER_H
#define CPP2C_TESTS_SUPPORT_TEMPORARY_FOLDER_H

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

// A temporary folder, removed with its contents by the destructor.
class TemporaryFolder {
 public:
  TemporaryFolder() : path_(testing::TempDir() + "cpp2c-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "no temporary folder";
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string file(const std::string& name) const { return path_ + '/' + name; }

  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(file(name)) << text;
    return file(name);
  }

  std::string read(const std::string& name) const {
    std::ifstream stream(file(name));
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  std::string path_;
};

#endif
