// SPDX-License-Identifier: MIT
#include "contextctl/output/table.h"

#include <algorithm>
#include <ostream>

#include "util/text.h"

namespace contextctl {
namespace {

// In characters: continuation bytes of UTF-8 sequences do not count.
size_t widthOf(const std::string& text) {
  return static_cast<size_t>(std::count_if(
      text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

std::vector<size_t> columnWidths(const std::vector<Table::Row>& rows) {
  std::vector<size_t> widths(rows.front().size());
  for (const Table::Row& row : rows)
    for (size_t i = 0; i < row.size(); i++) widths[i] = std::max(widths[i], widthOf(row[i]));
  return widths;
}

std::string lineOf(const Table::Row& row, const std::vector<size_t>& widths) {
  std::string line;
  for (size_t i = 0; i < row.size(); i++) line += row[i] + std::string(widths[i] - widthOf(row[i]) + 2, ' ');
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace

void Table::add(Row row) {
  for (std::string& text : row) text = util::printable(text);
  rows_.push_back(std::move(row));
}

void Table::print(std::ostream& out) const {
  const std::vector<size_t> widths = columnWidths(rows_);
  for (const Row& row : rows_) out << lineOf(row, widths) << '\n';
}

}  // namespace contextctl
