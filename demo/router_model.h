// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>
#include <span>

#include "demo/rule_table.h"
#include "transport/http_message.h"

namespace quayline::demo {

// The web pages of one router, behind its login. Works on the table that the demo router owns.
class RouterModel {
 public:
  virtual ~RouterModel() = default;

  // A page, or 404 for a path that the router does not have.
  virtual HttpResponse Answer(const HttpRequest& request) = 0;
};

// Who may see the pages.
struct Login {
  QString user;
  QString password;
};

// A row of the register of models.
struct ModelInfo {
  const char* name;  // what --model takes
  // The name by which the router asks for the login (Basic); nullptr: the model has a page for it.
  const char* realm;
  const char* sentence;  // what is particular about it
  std::unique_ptr<RouterModel> (*make)(RuleTable& table, const Login& login);
};

// A new model is a class in demo/models/ and a row here.
std::span<const ModelInfo> RouterModels();
const ModelInfo* FindModel(const QString& name);

HttpResponse NotFound();

}  // namespace quayline::demo
