// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/allowed_host.h"

#include <QUrl>

namespace quayline {

std::optional<AllowedHost> AllowedHost::Parse(const QString& text) {
  const QUrl url(QStringLiteral("http://") + text, QUrl::StrictMode);
  const bool is_host_alone = url.isValid() && !url.host().isEmpty() && url.path().isEmpty() &&
                             url.userInfo().isEmpty() && !url.hasQuery() && !url.hasFragment();
  if (!is_host_alone || text.endsWith(QLatin1Char(':')) || url.port() == 0) {
    return std::nullopt;
  }
  return AllowedHost{.host = url.host(),
                     .port = url.port() < 0 ? std::nullopt : std::optional(url.port())};
}

bool AllowedHost::Holds(const QString& address) const {
  const QUrl url(address);
  constexpr int kHttpPort = 80;
  constexpr int kHttpsPort = 443;
  const int usual = url.scheme() == QLatin1String("https") ? kHttpsPort : kHttpPort;
  return url.host() == host && url.port(usual) == port.value_or(usual);
}

}  // namespace quayline
