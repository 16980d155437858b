// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <expected>
#include <optional>
#include <utility>

#include "stub/answer_file.h"
#include "stub/page_folder.h"
#include "stub/page_template.h"
#include "stub/request_values.h"
#include "transport/http_server.h"

namespace quayline {

// One request and what became of it.
struct StubExchange {
  QString method;
  QString path;
  QList<std::pair<QString, QString>> fields;  // of form and query, or of "JSON" as a whole
  int status = 200;
  QString answer;        // the file that was sent, or where it led
  QStringList done;      // to the rules
  QStringList problems;  // what a real router could not have made sense of
  bool is_page = false;  // a file was asked for, and nothing sent

  bool IsPlain() const { return is_page && problems.isEmpty() && status < 400; }
};

// A router on loopback that is made of a folder of pages and a file of answers: it shows the pages,
// asks for the login, and keeps the rules that the pages send. Needs an event loop.
class StubRouter final : public QObject {
  Q_OBJECT

 public:
  // The answers are those of `answers_file`, or of "answers.json" in the folder. An error is a
  // sentence or several.
  static std::expected<std::unique_ptr<StubRouter>, QString> Open(const QString& folder,
                                                                  const QString& answers_file = {});

  std::expected<quint16, QString> Start();

  // The rules that would survive a restart of the router.
  const QList<StubRule>& KeptRules() const { return kept_; }
  // The rules of a new router.
  const QList<StubRule>& FirstRules() const { return answers_.rules; }
  // Changes that were never committed.
  bool HasPendingChanges() const { return kept_ != shown_; }
  // As new; logins end as well.
  void Reset();

 Q_SIGNALS:
  void exchanged(const quayline::StubExchange& exchange);

 private:
  StubRouter(PageFolder folder, AnswerFile answers);

  HttpResponse Answer(const HttpRequest& received);
  std::optional<HttpResponse> AnswerBeforeLogin(const HttpRequest& request,
                                                const RequestValues& values,
                                                StubExchange& exchange);
  HttpResponse AnswerLogin(const RequestValues& values, StubExchange& exchange);
  HttpResponse AnswerBatch(const HttpRequest& request, const RequestValues& values,
                           StubExchange& exchange);
  HttpResponse AnswerCall(const HttpRequest& request, const RequestValues& values,
                          StubExchange& exchange);
  const AnswerRow* FindRow(const HttpRequest& request, const RequestValues& values) const;
  bool TakeSession(QString& path) const;
  bool IsOpen(const HttpRequest& request, const RequestValues& values) const;
  bool HasToken(const RequestValues& values) const;
  bool CarryOut(const AnswerRow& row, const RequestValues& values, StubExchange& exchange);
  HttpResponse Reply(const StubAnswer& answer, const RequestValues& values, StubExchange& exchange);
  HttpResponse ServeFile(const QString& path, const RequestValues& values, StubExchange& exchange);
  QByteArray Filled(const QString& text, Escape escape, const RequestValues& values,
                    StubExchange& exchange);
  void RenewToken();

  PageFolder folder_;
  AnswerFile answers_;
  HttpServer server_;
  QList<StubRule> kept_;
  QList<StubRule> shown_;  // with the changes that are not committed yet
  QString session_;        // empty: not logged in
  QString token_;
  int next_id_ = 0;
};

}  // namespace quayline
