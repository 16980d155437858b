// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// Answers a save with 204: the page stays as it is.
class NocontentModel final : public FormModel {
 public:
  explicit NocontentModel(RuleTable& table);

 protected:
  HttpResponse Saved() const override;
};

}  // namespace quayline::demo
