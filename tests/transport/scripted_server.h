// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QMap>
#include <QSslServer>
#include <QTcpServer>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace quayline::testing {

// What the server does with a request: it sends `bytes` as they are and then closes, resets, goes
// silent, sends a byte now and then, or sends without an end.
struct Reply {
  enum class Then { kClose, kReset, kSilence, kDrip, kEndless };

  QByteArray bytes;
  Then then = Then::kClose;
  std::chrono::milliseconds delay{};  // before any of it
};

// A whole answer with its length declared.
Reply Answer(const QByteArray& status, const QByteArray& body, const QByteArray& headers = {});
Reply RedirectTo(const QByteArray& location);

// A listener for ScriptedServer with a certificate for 127.0.0.1 that no authority has signed; null
// where the program openssl is missing.
std::unique_ptr<QSslServer> SelfSignedListener();

// A web server on loopback that sends what the test wrote down for each path.
class ScriptedServer final : public QObject {
 public:
  // Uses `listener`, by default plain TCP.
  explicit ScriptedServer(std::unique_ptr<QTcpServer> listener = std::make_unique<QTcpServer>());

  QUrl Address(const QString& path, const QString& scheme = QStringLiteral("http")) const;

  // Refuses connections, and takes them again on the same port.
  void GoAway() { listener_->close(); }
  void Disconnect();  // everybody, in the middle of what they fetch
  bool ComeBack() { return listener_->listen(QHostAddress::LocalHost, port_); }

  QMap<QByteArray, Reply> replies;  // by path; others are answered with 404
  // Looked at first, where it is set: what a request with these headers is answered with.
  std::function<std::optional<Reply>(const QByteArray& request)> special;
  QList<QByteArray> requests;  // each with its headers, in order of arrival
  int open_connections = 0;

 private:
  void Accept();
  void Read(QTcpSocket* client);
  static void Send(QTcpSocket* client, const Reply& reply);
  static void SendMore(QTcpSocket* client, const QByteArray& bytes,
                       std::chrono::milliseconds pause);

  std::unique_ptr<QTcpServer> listener_;
  quint16 port_ = 0;
};

}  // namespace quayline::testing
