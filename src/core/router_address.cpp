// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/router_address.h"

#include <QRegularExpression>

namespace quayline {

namespace {

constexpr QLatin1String kSchemes[] = {QLatin1String("http://"), QLatin1String("https://")};

bool IsPort(const QString& text) {
  bool is_number = false;
  const int number = text.toInt(&is_number);
  return is_number && number >= 1 && number <= 65535;
}

// The colon between host and port, or -1. An IPv6 address without brackets has no port.
qsizetype ColonBeforePort(const QString& text) {
  const qsizetype bracket = text.lastIndexOf(QLatin1Char(']'));
  const qsizetype colon = text.lastIndexOf(QLatin1Char(':'));
  const bool is_ipv6 = bracket < 0 && text.count(QLatin1Char(':')) > 1;
  return colon > bracket && !is_ipv6 ? colon : -1;
}

}  // namespace

bool HasScheme(const QString& typed) {
  const QString text = typed.trimmed();
  return std::ranges::any_of(
      kSchemes, [&](QLatin1String scheme) { return text.startsWith(scheme, Qt::CaseInsensitive); });
}

RouterAddress ParseRouterAddress(const QString& typed) {
  RouterAddress address;
  QString rest = typed.trimmed();
  while (HasScheme(rest)) {
    address.http_type =
        rest.startsWith(kSchemes[1], Qt::CaseInsensitive) ? kSchemes[1] : kSchemes[0];
    rest = rest.mid(address.http_type.size()).trimmed();
  }
  static const QRegularExpression path(QStringLiteral("[/?#].*$"),
                                       QRegularExpression::DotMatchesEverythingOption);
  rest.remove(path);
  rest = rest.mid(rest.lastIndexOf(QLatin1Char('@')) + 1).trimmed();
  const qsizetype colon = ColonBeforePort(rest);
  if (colon >= 0 && IsPort(rest.mid(colon + 1))) {
    address.http_port = rest.mid(colon + 1);
    rest.truncate(colon);
  }
  address.host = rest;
  return address;
}

void SetAddress(RouterSession& session, const QString& typed) {
  const RouterAddress address = ParseRouterAddress(typed);
  session.router_ip = address.host;
  if (!address.http_type.isEmpty()) {
    session.http_type = address.http_type;
  }
  if (!address.http_port.isEmpty()) {
    session.http_port = address.http_port;
  } else if (address.IsWhole()) {
    session.http_port =
        address.http_type == kSchemes[1] ? QStringLiteral("443") : setting::kHttpPort.Standard();
  }
}

}  // namespace quayline
