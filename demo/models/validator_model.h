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
  QString RuleForm(const TypedRule& typed) const override;
  HttpResponse Saved() const override;
};

}  // namespace quayline::demo
