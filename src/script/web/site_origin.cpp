// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/site_origin.h"

#include <QHashFunctions>

namespace quayline {

namespace {

constexpr quint16 kHttpPort = 80;
constexpr quint16 kHttpsPort = 443;

}  // namespace

SiteOrigin SiteOrigin::Of(const QUrl& url) {
  const QString scheme = url.scheme();
  const bool is_plain = scheme == QLatin1String("http") || scheme == QLatin1String("ws");
  const bool is_secure = scheme == QLatin1String("https") || scheme == QLatin1String("wss");
  if (!is_plain && !is_secure) {
    return {.scheme = scheme, .host = url.host(QUrl::FullyEncoded), .port = 0};
  }
  return {.scheme = is_plain ? QStringLiteral("http") : QStringLiteral("https"),
          .host = url.host(QUrl::FullyEncoded).toLower(),
          .port = static_cast<quint16>(url.port(is_plain ? kHttpPort : kHttpsPort))};
}

QUrl SiteOrigin::Address() const {
  QUrl url;
  url.setScheme(scheme);
  url.setHost(host);
  const bool is_default = port == (scheme == QLatin1String("https") ? kHttpsPort : kHttpPort);
  url.setPort(is_default ? -1 : port);
  return url;
}

size_t qHash(const SiteOrigin& origin, size_t seed) {
  return qHashMulti(seed, origin.scheme, origin.host, origin.port);
}

}  // namespace quayline
