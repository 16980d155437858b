// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/rule_removal.h"

namespace quayline {

// A rule for both protocols may be two rows of the router, of which the script removes one. The
// second one is removed only where exactly the first one has gone.
Task<PassEnd> RuleRemoval::Remove(bool uses_both) {
  const int most_rows = uses_both ? 2 : 1;
  PassEnd end = PassEnd::kFailed;
  qsizetype rows_left = 0;
  for (int number = 0; number < most_rows; ++number) {
    const RuleVerdict verdict = co_await steps_.look();
    const qsizetype own_rows = added_.OwnRows(verdict, page_).size();
    const bool is_removable =
        number == 0 ? verdict.state == RuleState::kOnRouter : own_rows == rows_left;
    if (own_rows == 0 || !is_removable) {
      break;
    }
    rows_left = own_rows - 1;
    end = co_await steps_.remove_row(added_.RowsToKeep(verdict, page_));
    if (end != PassEnd::kDone) {
      break;
    }
  }
  co_return end;
}

}  // namespace quayline
