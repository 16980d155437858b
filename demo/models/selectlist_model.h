// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// The rules are in a select list. An existing rule is changed with a button of its own; the button
// for new ones refuses it.
class SelectlistModel final : public FormModel {
 public:
  explicit SelectlistModel(RuleTable& table);

 protected:
  QString RuleForm(const TypedRule& typed) const override;
  std::expected<void, RuleFault> Store(const Rule& rule, const FormFields& form) override;
};

}  // namespace quayline::demo
