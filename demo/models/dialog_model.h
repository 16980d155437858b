// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "demo/router_model.h"

namespace quayline::demo {

// A script builds the page. A rule is entered in a modal dialog whose drop-down is made of divs and
// whose buttons have captions and no names. "Save & Apply" sends the rule; after a countdown the
// page asks the router to put it into effect, and only then it is in the table.
class DialogModel final : public RouterModel {
 public:
  explicit DialogModel(RuleTable& table) : table_(table) {}

  HttpResponse Answer(const HttpRequest& request) override;

 private:
  HttpResponse Save(const HttpRequest& request);
  HttpResponse Apply();

  RuleTable& table_;
  std::optional<Rule> saved_;  // not in effect yet
};

}  // namespace quayline::demo
