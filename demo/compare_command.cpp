// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/compare_command.h"

#include <QFile>
#include <QNetworkProxy>
#include <QNetworkReply>

#include <chrono>

#include "demo/demo_router.h"
#include "demo/list_compare.h"

namespace quayline::demo {

namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 70s;  // longer than any --delay
constexpr qint64 kMaxStateBytes = qint64{4} << 20;
constexpr qint64 kMaxListBytes = qint64{16} << 20;

std::expected<QList<ListEntry>, QString> LoadList(const QString& file_name) {
  QFile file(file_name);
  if (!file.open(QIODevice::ReadOnly)) {
    return std::unexpected(
        QStringLiteral("The list \"%1\" cannot be read: %2.").arg(file_name, file.errorString()));
  }
  const QByteArray bytes = file.read(kMaxListBytes + 1);
  if (file.error() != QFile::NoError) {
    return std::unexpected(
        QStringLiteral("The list \"%1\" cannot be read: %2.").arg(file_name, file.errorString()));
  }
  if (bytes.size() > kMaxListBytes) {
    return std::unexpected(QStringLiteral("The list \"%1\" is too large.").arg(file_name));
  }
  QList<ListEntry> entries = ReadList(bytes);
  if (entries.isEmpty()) {
    return std::unexpected(QStringLiteral("The list \"%1\" holds no entry.").arg(file_name));
  }
  return entries;
}

CompareCommand::Outcome Failed(const QString& sentence) {
  return {.has_every_entry = false, .output = {}, .error = sentence};
}

}  // namespace

CompareCommand::CompareCommand(QString list_file, quint16 port, bool https)
    : list_file_(std::move(list_file)), port_(port), https_(https) {
  network_.setProxy(QNetworkProxy::NoProxy);
}

void CompareCommand::Start(std::function<void(const Outcome&)> done) {
  QUrl address(QStringLiteral("http://127.0.0.1/__state"));
  address.setScheme(https_ ? QStringLiteral("https") : QStringLiteral("http"));
  address.setPort(port_);
  QNetworkRequest request(address);
  // Whatever listens there must not lead the command to another host.
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                       QNetworkRequest::ManualRedirectPolicy);
  request.setTransferTimeout(std::chrono::milliseconds(kPatience).count());
  QNetworkReply* reply = network_.get(request);
  reply->ignoreSslErrors();
  connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64) {
    if (received > kMaxStateBytes) {
      reply->abort();
    }
  });
  connect(reply, &QNetworkReply::finished, this, [this, reply, finish = std::move(done)] {
    reply->deleteLater();
    finish(Compare(reply));
  });
}

CompareCommand::Outcome CompareCommand::Compare(QNetworkReply* reply) const {
  if (reply->error() != QNetworkReply::NoError) {
    return Failed(QStringLiteral("No state from port %1: %2.")
                      .arg(QString::number(port_), reply->errorString()));
  }
  const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
  if (status != 200) {
    return Failed(QStringLiteral("Port %1 answered with status %2 and no state.")
                      .arg(QString::number(port_), QString::number(status)));
  }
  const auto state = ReadState(reply->readAll());
  if (!state) {
    return Failed(state.error());
  }
  const auto entries = LoadList(list_file_);
  if (!entries) {
    return Failed(entries.error());
  }
  const QList<ComparedRow> rows = CompareList(*entries, state->rules);
  return {.has_every_entry = HasEveryEntry(rows), .output = FormatComparison(rows), .error = {}};
}

}  // namespace quayline::demo
