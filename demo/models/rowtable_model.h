// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/router_model.h"

namespace quayline::demo {

// All rows of the table are on one page as numbered boxes (name_1, start_1, ...), and one button
// posts them all; the answer is the same page. A row without name and start port is free, as a row
// of zeros is. One bad row refuses the whole page, which then shows what was typed.
class RowtableModel final : public RouterModel {
 public:
  explicit RowtableModel(RuleTable& table) : table_(table) {}

  HttpResponse Answer(const HttpRequest& request) override;

 private:
  HttpResponse TablePage(const QList<TypedRule>& rows, const QString& message) const;
  HttpResponse Apply(const HttpRequest& request);
  QList<TypedRule> StoredRows() const;

  RuleTable& table_;
};

}  // namespace quayline::demo
