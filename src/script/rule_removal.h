// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "async/task.h"
#include "core/added_rules.h"
#include "core/job_journal.h"
#include "core/page_rows.h"
#include "core/rule_match.h"
#include "script/script_run.h"

namespace quayline {

// Removes one rule that a job added, and no row that is not its own.
class RuleRemoval final {
 public:
  // What the job does for it.
  struct Steps {
    // What the router shows of the rule. The page is in `page` afterwards.
    std::function<Task<RuleVerdict>()> look;
    // Runs the script that removes one row, and none of `rows_to_keep`.
    std::function<Task<PassEnd>(QStringList rows_to_keep)> remove_row;
  };

  // `added` and `page` outlive the removal.
  RuleRemoval(const AddedRules& added, const PageRows& page, Steps steps)
      : added_(added), page_(page), steps_(std::move(steps)) {}

  // kFailed also where no row of the rule was found. `uses_both`: the rule is for both protocols.
  Task<PassEnd> Remove(bool uses_both);

 private:
  const AddedRules& added_;
  const PageRows& page_;
  const Steps steps_;
};

}  // namespace quayline
