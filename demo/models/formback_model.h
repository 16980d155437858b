// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/router_model.h"

namespace quayline::demo {

// A page lists the rules, with a link to a form. Saving the form answers with a redirect back to
// the list; a rule that is refused shows the form again, as it was typed, under a red message.
class FormbackModel final : public RouterModel {
 public:
  explicit FormbackModel(RuleTable& table) : table_(table) {}

  HttpResponse Answer(const HttpRequest& request) override;

 private:
  HttpResponse ListPage() const;
  HttpResponse FormPage(const TypedRule& typed, const QString& fault) const;
  HttpResponse Save(const HttpRequest& request);
  HttpResponse Delete(const HttpRequest& request);

  RuleTable& table_;
};

}  // namespace quayline::demo
