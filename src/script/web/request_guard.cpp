// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/request_guard.h"

#include <QUrl>

namespace quayline {

namespace {

// Schemes whose content comes out of the page itself.
bool StaysInPage(const QString& scheme) {
  static const QSet<QString> schemes{QStringLiteral("data"), QStringLiteral("blob"),
                                     QStringLiteral("about"), QStringLiteral("chrome-error")};
  return schemes.contains(scheme);
}

}  // namespace

void RequestGuard::SetHost(const QString& host) {
  if (host != host_) {
    host_ = host;
    told_.clear();
  }
}

void RequestGuard::interceptRequest(QWebEngineUrlRequestInfo& request) {
  const QUrl url = request.requestUrl();
  if (url.scheme() == QLatin1String("http")) {
    // On a connection that was used before, the engine takes an answer that does not come for an
    // old connection's end, and sends the request again by itself. A router that falls silent
    // behind a save would hold it twice. With TLS a connection costs a router too much to go
    // without.
    request.setHttpHeader("Connection", "close");
  }
  if (host_.isEmpty() || url.host() == host_ || StaysInPage(url.scheme())) {
    return;
  }
  request.block(true);
  const QString name = url.host().isEmpty() ? url.scheme() : url.host();
  if (!told_.contains(name)) {
    told_.insert(name);
    Q_EMIT blocked(name);
  }
}

}  // namespace quayline
