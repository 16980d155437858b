// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

#include "demo/router_model.h"

namespace quayline::demo {

// One page for everything, in the manner of the component libraries: its script keeps what was
// typed and writes it into the boxes again whenever it draws, so that a value that comes without an
// input event is lost. The login is a request that gives a token, and the form of a rule is in an
// open shadow root. Rules are pending changes until a second request commits them.
class SinglepageModel final : public RouterModel {
 public:
  SinglepageModel(RuleTable& table, Login login) : table_(table), login_(std::move(login)) {}

  HttpResponse Answer(const HttpRequest& request) override;

 private:
  HttpResponse AnswerCall(const QString& path, const HttpRequest& request);
  HttpResponse LogIn(const HttpRequest& request);
  HttpResponse Commit();
  bool HasToken(const HttpRequest& request) const;

  RuleTable& table_;
  Login login_;
  QByteArray token_;  // empty: no user is logged in
  QList<Rule> pending_;
};

}  // namespace quayline::demo
