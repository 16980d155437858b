// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

namespace quayline {

// Shows what the program is, and its version. Deletes itself when it is closed.
class AboutDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit AboutDialog(QWidget* parent);
};

}  // namespace quayline
