// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include "ui/toolkit/prompt_values.h"

class QCheckBox;
class QLineEdit;

namespace quayline {

// Shows a dialog of a web page. It is modal to its window alone, whose page is blocked.
class PageBoxDialog final : public QDialog {
  Q_OBJECT

 public:
  PageBoxDialog(const PageBox& question, QWidget* parent);

  PageBoxAnswer Answer(bool accepted) const;

 private:
  QLineEdit* typed_ = nullptr;
  QCheckBox* no_more_ = nullptr;
};

}  // namespace quayline
