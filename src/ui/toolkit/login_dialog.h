// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include "i18n/translator.h"
#include "ui/toolkit/prompt_values.h"

class QLineEdit;

namespace quayline {

// Asks for the login of a router.
class LoginDialog final : public QDialog {
  Q_OBJECT

 public:
  LoginDialog(const QString& address, const Translator& translator, QWidget* parent);

  LoginAnswer Answer() const;

 private:
  QLineEdit* username_;
  QLineEdit* password_;
};

}  // namespace quayline
