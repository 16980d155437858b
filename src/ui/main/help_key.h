// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "i18n/translator.h"

namespace quayline {

// F1 in each window: shows the page of the help that the window names by its property "helpPage",
// or, as a box does, the window that it belongs to. Others have the first page.
class HelpKey final : public QObject {
  Q_OBJECT

 public:
  HelpKey(const Translator& translator, QObject* parent);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  const Translator& translator_;
};

}  // namespace quayline
