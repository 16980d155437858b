// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// Shows message boxes: when a field loses the focus, before saving, and after it.
class ValidatorModel final : public FormModel {
 public:
  explicit ValidatorModel(RuleTable& table);

 protected:
  // A check box for each rule, and a button that removes those that are checked.
  QString RuleList() const override;
  HttpResponse OtherPage(const QString& page, const HttpRequest& request) override;
  QString RuleForm(const TypedRule& typed) const override;
  HttpResponse Saved() const override;
};

}  // namespace quayline::demo
