// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// The form leads to a small window that asks for the computer; its own Save stores the rule, sends
// the opener page to the list and closes the window.
class PopupModel final : public FormModel {
 public:
  explicit PopupModel(RuleTable& table);

 protected:
  QString RuleForm(const TypedRule& typed) const override;
  HttpResponse OtherPage(const QString& page, const HttpRequest& request) override;
  TypedRule ReadForm(const FormFields& form) const override;
  HttpResponse Saved() const override;
  HttpResponse Refused(const TypedRule& typed, RuleFault fault) const override;

 private:
  HttpResponse ComputerPage(const TypedRule& typed, const QString& fault) const;
};

}  // namespace quayline::demo
