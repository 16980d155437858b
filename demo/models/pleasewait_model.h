// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// Saving leads to a page that asks the user to wait and navigates by itself a second later.
class PleasewaitModel final : public FormModel {
 public:
  explicit PleasewaitModel(RuleTable& table);

 protected:
  HttpResponse Saved() const override;
};

}  // namespace quayline::demo
