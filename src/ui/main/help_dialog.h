// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

namespace quayline {

// The program's own help, which needs no network. Deletes itself when it is closed.
class HelpDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit HelpDialog(QWidget* parent);
};

}  // namespace quayline
