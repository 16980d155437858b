// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// Apply shows that it works, and submits by itself two seconds later.
class DelayedModel final : public FormModel {
 public:
  explicit DelayedModel(RuleTable& table);

 protected:
  QString RuleForm(const TypedRule& typed) const override;
};

}  // namespace quayline::demo
