// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// One page for everything: the text after "#" chooses the view, rows are read and rules are saved
// by XMLHttpRequest, and the page asks for the state every three seconds for as long as it is open.
class ShellModel final : public FormModel {
 public:
  explicit ShellModel(RuleTable& table);

 protected:
  HttpResponse HomePage() const override;
  HttpResponse OtherPage(const QString& page, const HttpRequest& request) override;
  HttpResponse Saved() const override;
  HttpResponse Refused(const TypedRule& typed, RuleFault fault) const override;
};

}  // namespace quayline::demo
