// SPDX-License-Identifier: MIT
#include "host/process/output_lines.h"

#include "binding/context.h"
#include "host/include/cpp2c_host.h"

namespace host {

void OutputLines::add(std::string_view part) {
  pending_ += part;
  std::size_t start = 0;
  while (const std::size_t size = recordAt(start)) {
    write(pending_.substr(start, size));
    start += size;
  }
  pending_.erase(0, start);
}

void OutputLines::finish() {
  if (!pending_.empty()) write(pending_);
  pending_.clear();
}

// The size of the record that starts there; 0 if more output is needed to know.
std::size_t OutputLines::recordAt(std::size_t start) const {
  const std::size_t line = pending_.find('\n', start);
  if (line != std::string::npos && line - start <= kLongest) return line - start + 1;
  return pending_.size() - start > kLongest ? kLongest : 0;
}

void OutputLines::write(const std::string& record) {
  log_.record("command", C_LOG_INFO, record.c_str());
}

}  // namespace host
