// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/login_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>

namespace quayline {

namespace {

constexpr Message kExplanation{"%1 asks for a user name and a password."};
constexpr Message kUsername{"&Username:"};
constexpr Message kPassword{"&Password:"};

}  // namespace

LoginDialog::LoginDialog(const QString& address, const Translator& translator, QWidget* parent)
    : QDialog(parent), username_(new QLineEdit(this)), password_(new QLineEdit(this)) {
  setWindowTitle(QStringLiteral("Quayline"));
  auto* explanation = new QLabel(translator.Text(kExplanation).arg(address), this);
  explanation->setTextFormat(Qt::PlainText);
  explanation->setWordWrap(true);
  username_->setObjectName(QStringLiteral("username"));
  password_->setObjectName(QStringLiteral("password"));
  password_->setEchoMode(QLineEdit::Password);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* form = new QFormLayout(this);
  form->addRow(explanation);
  form->addRow(translator.Text(kUsername), username_);
  form->addRow(translator.Text(kPassword), password_);
  form->addRow(buttons);
}

LoginAnswer LoginDialog::Answer() const {
  return {.username = username_->text(), .password = password_->text()};
}

}  // namespace quayline
