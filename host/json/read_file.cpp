// SPDX-License-Identifier: MIT
#include "host/json/read_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "host/start_error.h"
#include "include_c"

namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void refuse(const std::string& name) {
  throw StartError(C_RESULT_SYSTEM_CALL, name + ": cannot be read: " + std::strerror(errno));
}

}  // namespace

std::string readFile(const std::string& name) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(name.c_str(), "re"));
  if (file == nullptr) refuse(name);

  std::string text;
  char part[4096];
  std::size_t size = 0;
  while ((size = std::fread(part, 1, sizeof part, file.get())) > 0) text.append(part, size);
  if (std::ferror(file.get()) != 0) refuse(name);
  return text;
}
