// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// Talks in message boxes: when a box is left, before the saving, and behind it.
class ValidatorModel final : public FormModel {
 public:
  explicit ValidatorModel(RuleTable& table);

 protected:
  QString RuleForm(const TypedRule& typed) const override;
  HttpResponse Saved() const override;
};

}  // namespace quayline::demo
