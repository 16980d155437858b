// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// A frameset: the menu in a frame at the left, the pages in a frame called "main".
class FramesetModel final : public FormModel {
 public:
  explicit FramesetModel(RuleTable& table);

 protected:
  HttpResponse HomePage() const override;
  HttpResponse RouterPage(const QString& title, const QString& content) const override;
  HttpResponse OtherPage(const QString& page, const HttpRequest& request) override;
};

}  // namespace quayline::demo
