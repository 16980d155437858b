// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "transport/scripted_server.h"

#include <QFile>
#include <QProcess>
#include <QSslKey>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTimer>

#include <sys/socket.h>

namespace quayline::testing {

Reply Answer(const QByteArray& status, const QByteArray& body, const QByteArray& headers) {
  return {"HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" +
          headers + "\r\n" + body};
}

Reply RedirectTo(const QByteArray& location) {
  return Answer("302 Found", "elsewhere", "Location: " + location + "\r\n");
}

std::unique_ptr<QSslServer> SelfSignedListener() {
  const QTemporaryDir folder;
  QProcess openssl;
  openssl.setWorkingDirectory(folder.path());
  openssl.startCommand(QStringLiteral(
      "openssl req -x509 -nodes -subj /CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 "
      "-keyout key.pem -out certificate.pem"));
  QFile key(folder.filePath(QStringLiteral("key.pem")));
  if (!openssl.waitForFinished() || openssl.exitCode() != 0 || !key.open(QIODevice::ReadOnly)) {
    return nullptr;
  }
  QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
  tls.setLocalCertificateChain(
      QSslCertificate::fromPath(folder.filePath(QStringLiteral("certificate.pem"))));
  tls.setPrivateKey(QSslKey(&key, QSsl::Rsa));
  auto listener = std::make_unique<QSslServer>();
  listener->setSslConfiguration(tls);
  return listener;
}

ScriptedServer::ScriptedServer(std::unique_ptr<QTcpServer> listener)
    : listener_(std::move(listener)) {
  listener_->listen(QHostAddress::LocalHost);
  port_ = listener_->serverPort();
  // QSslServer reports it later than QTcpServer, and each reports only one of the two in time.
  connect(listener_.get(), &QTcpServer::pendingConnectionAvailable, this, &ScriptedServer::Accept);
}

QUrl ScriptedServer::Address(const QString& path, const QString& scheme) const {
  return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(port_).arg(path));
}

void ScriptedServer::Accept() {
  while (QTcpSocket* client = listener_->nextPendingConnection()) {
    ++open_connections;
    connect(client, &QTcpSocket::disconnected, this, [this, client] {
      --open_connections;
      client->deleteLater();
    });
    connect(client, &QTcpSocket::readyRead, this, [this, client] { Read(client); });
    Read(client);
  }
}

void ScriptedServer::Disconnect() {
  for (QTcpSocket* client : listener_->findChildren<QTcpSocket*>()) {
    client->disconnectFromHost();
  }
}

void ScriptedServer::Read(QTcpSocket* client) {
  if (!client->peek(65536).contains("\r\n\r\n")) {
    return;
  }
  requests.append(client->readAll());
  const std::optional<Reply> first = special ? special(requests.last()) : std::nullopt;
  const Reply reply = first.value_or(
      replies.value(requests.last().split(' ').value(1), Answer("404 Not Found", "no such page")));
  if (reply.delay.count() > 0) {
    QTimer::singleShot(reply.delay, client, [client, reply] { Send(client, reply); });
  } else {
    Send(client, reply);
  }
}

void ScriptedServer::Send(QTcpSocket* client, const Reply& reply) {
  client->write(reply.bytes);
  client->flush();
  if (reply.then == Reply::Then::kClose) {
    client->disconnectFromHost();
  } else if (reply.then == Reply::Then::kReset) {
    // Without lingering the system sends a reset in place of an orderly end.
    const linger none{.l_onoff = 1, .l_linger = 0};
    setsockopt(static_cast<int>(client->socketDescriptor()), SOL_SOCKET, SO_LINGER, &none,
               sizeof none);
    client->abort();
  } else if (reply.then == Reply::Then::kDrip) {
    SendMore(client, "x", std::chrono::milliseconds(200));
  } else if (reply.then == Reply::Then::kEndless) {
    SendMore(client, "4000\r\n" + QByteArray(0x4000, 'x') + "\r\n", {});
  }
}

// One chunk after the other, and no more than the client takes.
void ScriptedServer::SendMore(QTcpSocket* client, const QByteArray& bytes,
                              std::chrono::milliseconds pause) {
  auto* timer = new QTimer(client);
  connect(timer, &QTimer::timeout, client, [client, bytes] {
    if (client->bytesToWrite() < bytes.size()) {
      client->write(bytes);
    }
  });
  timer->start(pause);
}

}  // namespace quayline::testing
