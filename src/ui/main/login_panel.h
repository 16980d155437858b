// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <memory>

#include "core/router_session.h"

namespace Ui {
class LoginPanel;
}

namespace quayline {

// The router's login on the main window. Shows the session; what the user types goes into the
// session and is reported.
class LoginPanel final : public QWidget {
  Q_OBJECT

 public:
  // `session` outlives it.
  LoginPanel(RouterSession& session, QWidget* parent);
  ~LoginPanel() override;

  void Show();

 Q_SIGNALS:
  // The user changed the login, or whether it is shown.
  void edited();
  void helpWanted();
  void defaultLoginsWanted();

 private:
  void ShowEchoMode();

  RouterSession& session_;
  std::unique_ptr<Ui::LoginPanel> ui_;
};

}  // namespace quayline
