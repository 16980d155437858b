// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTcpServer>

#include <chrono>
#include <expected>
#include <functional>
#include <memory>

#include "transport/http_message.h"

namespace quayline {

// How long an answer takes: a random time between both, ends included.
struct AnswerDelay {
  std::chrono::milliseconds least{0};
  std::chrono::milliseconds most{0};
};

// A small HTTP/1.1 server, with keep-alive. Requests of one connection are answered in their order.
// The handler is called when the delay is over, not before: a request whose client has gone by then
// is dropped without effect, as a slow router drops it.
class HttpServer final : public QObject {
 public:
  using Handler = std::function<HttpResponse(const HttpRequest&)>;
  // Answers once, at any time. After the client has gone, the answer has no effect.
  using LateHandler = std::function<void(const HttpRequest&, std::function<void(HttpResponse)>)>;

  // Takes connections from `listener`: plain ones, or those of a TLS server.
  explicit HttpServer(Handler handler, AnswerDelay delay = {},
                      std::unique_ptr<QTcpServer> listener = std::make_unique<QTcpServer>());
  explicit HttpServer(LateHandler handler, AnswerDelay delay = {},
                      std::unique_ptr<QTcpServer> listener = std::make_unique<QTcpServer>());

  // Listens on `address` and nowhere else; port 0 takes any free one. Gives the port, or a sentence
  // about the error.
  std::expected<quint16, QString> Listen(
      quint16 port, const QHostAddress& address = QHostAddress(QHostAddress::LocalHost));

  // How many connections are served at a time. One too many is closed at once, without an answer.
  void SetMaxConnections(int count) { max_connections_ = count; }
  static constexpr int kMaxConnections = 256;

 private:
  void TakeConnections();

  LateHandler handler_;
  AnswerDelay delay_;
  int max_connections_ = kMaxConnections;
  std::unique_ptr<QTcpServer> listener_;
};

}  // namespace quayline
