// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/router_model.h"

namespace quayline::demo {

// One long page: a table that is always as long as the router has rows, and below it a form of six
// fields. Saving the form answers with a redirect back to the page. A row without a rule shows one
// of the maker's presets, so that the page costs the same however many rules were added: a page to
// measure on.
class LonglistModel final : public RouterModel {
 public:
  explicit LonglistModel(RuleTable& table) : table_(table) {}

  HttpResponse Answer(const HttpRequest& request) override;

 private:
  HttpResponse RulesPage(const TypedRule& typed, const QString& fault) const;
  HttpResponse Save(const HttpRequest& request);

  RuleTable& table_;
};

}  // namespace quayline::demo
