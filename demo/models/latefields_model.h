// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// The page arrives empty: its script builds the form a third of a second after the load.
class LatefieldsModel final : public FormModel {
 public:
  explicit LatefieldsModel(RuleTable& table);

 protected:
  HttpResponse OtherPage(const QString& page, const HttpRequest& request) override;
  QString RuleForm(const TypedRule& typed) const override;
};

}  // namespace quayline::demo
