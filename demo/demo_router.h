// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include <expected>
#include <memory>

#include "demo/router_model.h"
#include "demo/rule_table.h"
#include "transport/http_server.h"

namespace quayline::demo {

struct DemoOptions {
  quint16 port = 0;  // 0: any free one
  AnswerDelay delay = {};
  QString user = QStringLiteral("admin");
  QString password = QStringLiteral("admin");
  int entries = 20;  // the rows of the rule table
  bool https = false;
  QString certificate_file;  // PEM; without these two, https has a new certificate of its own
  QString key_file;
};

// A home router on loopback, for demonstrations and tests. Its pages ask for a login (most models
// for a Basic one); two addresses do not: GET /__state gives the table and the counters as JSON,
// POST /__reset makes the router as new. Needs an event loop.
class DemoRouter final {
 public:
  DemoRouter() = default;
  DemoRouter(const DemoRouter&) = delete;
  DemoRouter& operator=(const DemoRouter&) = delete;

  // Starts as the model of that name and gives the port, or a sentence about the error. A router
  // that runs already is replaced, with its rules.
  std::expected<quint16, QString> Start(const QString& model, const DemoOptions& options);

  QList<Rule> Rules() const;
  // Requests to the router's pages, refused logins among them, since the start or the reset.
  int Requests() const { return requests_; }
  // Basic logins that were given and are wrong, since the start or the reset.
  int WrongLogins() const { return wrong_logins_; }
  int Saves() const;
  void Reset();

 private:
  HttpResponse Answer(const HttpRequest& request);
  HttpResponse AnswerWithoutLogin(const HttpRequest& request);
  bool IsLetIn(const HttpRequest& request);
  void MakeModel();

  const ModelInfo* info_ = nullptr;
  DemoOptions options_;
  int requests_ = 0;
  int wrong_logins_ = 0;
  std::unique_ptr<RuleTable> table_;
  std::unique_ptr<RouterModel> model_;
  std::unique_ptr<HttpServer> server_;
};

// The JSON of GET /__state.
struct RouterState {
  QString model;
  QList<Rule> rules;
  int requests = 0;
  int saves = 0;
};

QByteArray FormatState(const RouterState& state);
// Or a sentence about what is wrong with `json`.
std::expected<RouterState, QString> ReadState(const QByteArray& json);

}  // namespace quayline::demo
