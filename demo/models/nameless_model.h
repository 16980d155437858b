// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// No box of the form has a name or an id: a script of the page packs their values into one
// hidden field.
class NamelessModel final : public FormModel {
 public:
  explicit NamelessModel(RuleTable& table);

 protected:
  QString RuleForm(const TypedRule& typed) const override;
  TypedRule ReadForm(const FormFields& form) const override;
};

}  // namespace quayline::demo
