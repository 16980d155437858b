// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "app/one_copy.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

namespace quayline {

namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 3s;  // the other copy may be starting, or drawing a large list
constexpr unsigned long kPauseMs = 50;
constexpr qsizetype kMaxRequest = 16 << 10;  // a path; and a line break
constexpr QByteArrayView kDone = "done\n";

// A socket of this user alone, one for each folder.
QString ServerName(const QString& folder) {
  const QByteArray place = QDir(folder).canonicalPath().toUtf8();
  const QByteArray hash = QCryptographicHash::hash(place, QCryptographicHash::Sha256).toHex();
  return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
         QStringLiteral("/quayline-") + QString::fromLatin1(hash.first(16));
}

}  // namespace

OneCopy::OneCopy(const QString& folder)
    : server_name_(ServerName(folder)), lock_(folder + QStringLiteral("/quayline.lock")) {
  lock_.setStaleLockTime(0);  // a copy may run for weeks
}

bool OneCopy::Claim() { return lock_.tryLock() || lock_.error() != QLockFile::LockFailedError; }

void OneCopy::Listen() {
  QLocalServer::removeServer(server_name_);  // left by a copy that was killed
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    while (QLocalSocket* caller = server_.nextPendingConnection()) {
      connect(caller, &QLocalSocket::disconnected, caller, &QObject::deleteLater);
      connect(caller, &QLocalSocket::readyRead, this, [this, caller] { Answer(caller); });
    }
  });
  server_.listen(server_name_);
}

void OneCopy::Release() {
  server_.close();
  lock_.unlock();
}

void OneCopy::Answer(QLocalSocket* caller) {
  if (!caller->canReadLine()) {
    if (caller->bytesAvailable() > kMaxRequest) {
      caller->abort();
    }
    return;
  }
  const QByteArray request = caller->readLine(kMaxRequest).chopped(1);
  caller->write(kDone.data(), kDone.size());
  caller->disconnectFromServer();
  Q_EMIT asked(QString::fromUtf8(QByteArray::fromPercentEncoding(request)));
}

bool OneCopy::AskOther(const QString& file) const {
  const QByteArray request = file.toUtf8().toPercentEncoding("/") + '\n';
  for (const QDeadlineTimer limit(kPatience); !limit.hasExpired(); QThread::msleep(kPauseMs)) {
    QLocalSocket other;
    other.connectToServer(server_name_);
    const auto left = [&limit] { return static_cast<int>(limit.remainingTime()); };
    if (other.waitForConnected(left()) && other.write(request) == request.size() &&
        other.waitForReadyRead(left()) && other.readAll() == kDone) {
      return true;
    }
  }
  return false;
}

}  // namespace quayline
