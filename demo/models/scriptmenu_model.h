// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// Framesets within framesets, in one document and across two. The menu is written by a script of
// the frameset, and written again whenever one of its sections opens.
class ScriptmenuModel final : public FormModel {
 public:
  explicit ScriptmenuModel(RuleTable& table);

 private:
  HttpResponse HomePage() const override;
  HttpResponse RouterPage(const QString& title, const QString& content) const override;
  HttpResponse OtherPage(const QString& page, const HttpRequest& request) override;
};

}  // namespace quayline::demo
