// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/main/login_panel.h"

#include "ui/toolkit/theme.h"
#include "ui_login_panel.h"

namespace quayline {

LoginPanel::LoginPanel(RouterSession& session, QWidget* parent)
    : QWidget(parent), session_(session), ui_(std::make_unique<Ui::LoginPanel>()) {
  ui_->setupUi(this);
  ui_->login_help_button->setIcon(ThemeIcon(QStringLiteral("help")));
  connect(ui_->username_edit, &QLineEdit::textEdited, this, [this](const QString& text) {
    session_.username = text;
    Q_EMIT edited();
  });
  connect(ui_->password_edit, &QLineEdit::textEdited, this, [this](const QString& text) {
    session_.password = text;
    Q_EMIT edited();
  });
  connect(ui_->show_password_check, &QCheckBox::clicked, this, [this](bool is_shown) {
    session_.show_password = is_shown;
    ShowEchoMode();
    Q_EMIT edited();
  });
  connect(ui_->login_help_button, &QToolButton::clicked, this, &LoginPanel::helpWanted);
  connect(ui_->default_logins_button, &QPushButton::clicked, this,
          &LoginPanel::defaultLoginsWanted);
}

LoginPanel::~LoginPanel() = default;

void LoginPanel::Show() {
  ui_->username_edit->setText(session_.username);
  ui_->password_edit->setText(session_.password);
  ui_->show_password_check->setChecked(session_.show_password);
  ShowEchoMode();
}

void LoginPanel::ShowEchoMode() {
  ui_->password_edit->setEchoMode(session_.show_password ? QLineEdit::Normal : QLineEdit::Password);
}

}  // namespace quayline
