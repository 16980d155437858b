// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "demo/models/form_model.h"

namespace quayline::demo {

// Asks for its login on a page of its own and recognises its user by a cookie. One user at a time:
// a new login ends the one before it.
class WebloginModel final : public FormModel {
 public:
  WebloginModel(RuleTable& table, const Login& login);

  HttpResponse Answer(const HttpRequest& request) override;

 private:
  HttpResponse LoginPage(const QString& fault) const;
  HttpResponse LogIn(const FormFields& form);
  bool HasSession(const HttpRequest& request) const;

  Login login_;
  QByteArray session_;  // the cookie's value; empty: no user is logged in
};

}  // namespace quayline::demo
