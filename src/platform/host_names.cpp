// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/host_names.h"

#include <QHostAddress>
#include <QHostInfo>
#include <QScopeGuard>

#include <optional>

#include "async/wait.h"

namespace quayline {

namespace {

constexpr qsizetype kMaxName = 256;

bool EndsField(QChar c) {
  return c == QLatin1Char('|') || c == QLatin1Char('(') || c == QLatin1Char(')') || !c.isPrint();
}

}  // namespace

QString ShortHostName(const QString& name) {
  if (!QHostAddress(name).isNull()) {
    return {};
  }
  QString result = name.left(kMaxName).section(QLatin1Char('.'), 0, 0);
  result.removeIf(EndsField);
  return result.trimmed();
}

Task<QString> SystemHostNames::OfAddress(QString address) {
  const QString wanted = address.trimmed();
  if (QHostAddress(wanted).toString() != wanted) {
    co_return QString();
  }
  QObject receiver;
  OneShot<QHostInfo> answer;
  answer.GiveUpAfter(limit_);
  const int lookup = QHostInfo::lookupHost(wanted, &receiver, answer.Callback());
  const auto give_up = qScopeGuard([lookup] { QHostInfo::abortHostLookup(lookup); });
  const std::optional<QHostInfo> found = co_await answer;
  co_return found ? ShortHostName(found->hostName()) : QString();
}

}  // namespace quayline
