// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_OUTPUT_TABLE_H
#define CPP2C_CONTEXTCTL_OUTPUT_TABLE_H

#include <iosfwd>
#include <string>
#include <vector>

namespace contextctl {

// Prints rows in columns as wide as their widest text. Control characters are escaped.
class Table {
 public:
  using Row = std::vector<std::string>;

  explicit Table(Row headings) { add(std::move(headings)); }

  void add(Row row);  // one text per heading
  void print(std::ostream& out) const;

 private:
  std::vector<Row> rows_;
};

}  // namespace contextctl

#endif
