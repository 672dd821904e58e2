// SPDX-License-Identifier: MIT
#ifndef CPP2C_CONTEXTCTL_OUTPUT_TABLE_H
#define CPP2C_CONTEXTCTL_OUTPUT_TABLE_H

#include <iosfwd>
#include <string>
#include <vector>

namespace contextctl {

// Rows of texts, printed in columns as wide as their widest text. Control characters are spelled out.
class Table {
 public:
  using Row = std::vector<std::string>;

  explicit Table(Row headings) { add(std::move(headings)); }

  void add(Row row);  // as many texts as there are headings
  void print(std::ostream& out) const;

 private:
  std::vector<Row> rows_;
};

}  // namespace contextctl

#endif
