// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "app/single_instance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>

#include <chrono>
#include <sys/socket.h>
#include <unistd.h>

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr auto kAnswerTime = 2s;
constexpr int kAttempts = 10;  // to get a name that another instance has just released
constexpr qsizetype kMaxRequest = 16 << 10;  // a path
constexpr QByteArrayView kPing = "ping\n";
constexpr QByteArrayView kOpen = "open ";
constexpr QByteArrayView kDone = "done\n";

QString ServerName(const QString& folder) {
  const QByteArray place = QDir(folder).canonicalPath().toUtf8();
  const QByteArray hash = QCryptographicHash::hash(place, QCryptographicHash::Sha256).toHex();
  return QStringLiteral("quayline-%1-%2")
      .arg(QString::number(geteuid()), QString::fromLatin1(hash.first(32)));
}

// Every user of the computer can take any name of this kind.
bool IsOfThisUser(const QLocalSocket& socket) {
  ucred peer = {};
  socklen_t size = sizeof(peer);
  return getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer,
                    &size) == 0 &&
         peer.uid == geteuid();
}

}  // namespace

SingleInstance::SingleInstance(const QString& folder) : server_name_(ServerName(folder)) {
  server_.setSocketOptions(QLocalServer::AbstractNamespaceOption);
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    while (QLocalSocket* caller = server_.nextPendingConnection()) {
      connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
      if (!IsOfThisUser(*caller)) {
        caller->abort();
        continue;
      }
      connect(caller, &QLocalSocket::readyRead, this, [this, caller] { Serve(caller); });
      Serve(caller);
    }
  });
}

InstanceState SingleInstance::TryAcquire() {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    // Where no such socket can be made there is nothing to find another instance by.
    if (server_.listen(server_name_) ||
        server_.serverError() != QAbstractSocket::AddressInUseError) {
      return InstanceState::kAcquired;
    }
    switch (Ask(kPing.toByteArray())) {
      case Answer::kDone:
        return InstanceState::kRunning;
      case Answer::kSilence:
        return InstanceState::kNotAnswering;
      case Answer::kNobody:
        break;
    }
  }
  return InstanceState::kAcquired;
}

void SingleInstance::Listen() {
  is_listening_ = true;
  const QStringList files = std::exchange(pending_, {});
  for (const QString& file : files) {
    Q_EMIT requested(file);
  }
}

void SingleInstance::Release() { server_.close(); }

// Answers as soon as the event loop runs: a hanging instance does not.
void SingleInstance::Serve(QLocalSocket* caller) {
  if (!caller->canReadLine()) {
    if (caller->bytesAvailable() > kMaxRequest) {
      caller->abort();
    }
    return;
  }
  const QByteArray request = caller->readLine(kMaxRequest);
  caller->write(kDone.data(), kDone.size());
  caller->disconnectFromServer();
  if (!request.startsWith(kOpen)) {
    return;
  }
  const QByteArray file = request.sliced(kOpen.size()).chopped(1);
  pending_.append(QString::fromUtf8(QByteArray::fromPercentEncoding(file)));
  if (is_listening_) {
    Listen();
  }
}

bool SingleInstance::HandOver(const QString& file) const {
  return Ask(kOpen.toByteArray() + file.toUtf8().toPercentEncoding("/") + '\n') == Answer::kDone;
}

SingleInstance::Answer SingleInstance::Ask(const QByteArray& request) const {
  const QDeadlineTimer deadline(kAnswerTime);
  const auto left = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
  QLocalSocket other;
  other.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
  other.connectToServer(server_name_);
  if (!other.waitForConnected(left())) {
    return deadline.hasExpired() ? Answer::kSilence : Answer::kNobody;
  }
  if (!IsOfThisUser(other)) {
    return Answer::kNobody;
  }
  other.write(request);
  QByteArray answer;
  while (!answer.contains('\n') && other.waitForReadyRead(left())) {
    answer += other.readAll();
  }
  if (answer == kDone) {
    return Answer::kDone;
  }
  return deadline.hasExpired() ? Answer::kSilence : Answer::kNobody;
}

}  // namespace quayline
