// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// Saves into a hidden frame, so that the page itself does not navigate: the answer in the frame
// shows whether it was saved. Takes rules from its own pages only.
class HiddenframeModel final : public FormModel {
 public:
  explicit HiddenframeModel(RuleTable& table);

 protected:
  QString RuleForm(const TypedRule& typed) const override;
  HttpResponse Saved() const override;
  HttpResponse Refused(const TypedRule& typed, RuleFault fault) const override;
};

}  // namespace quayline::demo
