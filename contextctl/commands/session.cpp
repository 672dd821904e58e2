// SPDX-License-Identifier: MIT
#include "contextctl/commands/session.h"

#include <ostream>

#include "contextctl/system/failure.h"
#include "contextctl/system/interrupt.h"

namespace contextctl {

void Session::show(const Answer& answer, const std::function<void(std::ostream& out)>& print_text) const {
  if (json()) {
    out_ << answer.json << '\n';
  } else if (print_text) {
    print_text(out_);
  }
}

void Session::follow(const std::string& path, const Query& query, int count,
                     const std::function<void(const Record& item)>& print_text) const {
  const Interrupt interrupt;
  int received = 0;
  connection_.follow(path, query, interrupt, [&](const Answer& item) {
    show(item, [&](std::ostream&) { print_text(item.record); });
    flush(out_);
    return ++received != count;
  });
}

void flush(std::ostream& out) {
  out.flush();
  if (!out) throw Failure(kExitNoAnswer, "cannot write the output");
}

}  // namespace contextctl
