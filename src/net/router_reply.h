// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace quayline {

// Where a web address leads: the parts that a request needs.
struct WebTarget {
  QString host;
  QString path;  // with the query; "/" where the address names none
};

// Splits `address` at "://", at the first "/", and at a ":" before that. A port is left out; an
// address without a "/" is all host.
WebTarget SplitWebAddress(const QString& address);

// The request that makes a router show its login: no header but the host.
QByteArray DetectionRequest(const WebTarget& target);

// The first text in double quotation marks, in lower case and without blanks: in a reply that asks
// for a login it is the realm. Empty where nothing is quoted.
QString RealmOf(const QString& block);

// The path on the same host to which a reply redirects, or an empty text.
QString RedirectPath(const QByteArray& reply, const QString& host);

// The names of the routers, prepared for comparisons. The first one is the list's placeholder.
class RouterNames final {
 public:
  RouterNames() = default;
  explicit RouterNames(const QStringList& names);

  // The first name that contains `realm`, or -1. Blanks and hyphens of the names do not count, but
  // hyphens of the realm do: a realm with a hyphen is in no name. An empty realm is in all of them.
  int FindRealm(const QString& realm) const;

  // The names that have most in common with what a reply shows: its quoted text, its title, its
  // field "Server" and the texts of its page. The nearest first, three at most, none where nothing
  // fits. Rare words count more than those of many names.
  QList<int> Nearest(const QByteArray& reply) const;

 private:
  QStringList names_;
  QStringList keys_;
};

}  // namespace quayline
