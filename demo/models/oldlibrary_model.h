// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// Its pages use an old script library that replaces with functions of its own the browser's
// built-ins.
class OldlibraryModel final : public FormModel {
 public:
  explicit OldlibraryModel(RuleTable& table);

 protected:
  HttpResponse OtherPage(const QString& page, const HttpRequest& request) override;
  QString RuleForm(const TypedRule& typed) const override;
};

}  // namespace quayline::demo
