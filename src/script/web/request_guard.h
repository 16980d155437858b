// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QUrl>
#include <QWebEngineUrlRequestInterceptor>

#include <optional>

#include "script/web/page_requests.h"
#include "script/web/router_gate.h"

namespace quayline {

// Keeps a job's browser on its router: whatever a page requests from another host, or from another
// port or scheme of the same host, is blocked and reported. The gate enforces this for the
// connections themselves; the guard knows the request, so it can report what was blocked and why.
class RequestGuard final : public QWebEngineUrlRequestInterceptor {
  Q_OBJECT

 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

  // Makes `router` the only origin that may be asked. Until then every request is let through.
  void SetRouter(const SiteOrigin& router);
  // Lets another origin be asked as well, until another router is set.
  void Allow(const SiteOrigin& origin);
  const QSet<SiteOrigin>& Allowed() const { return allowed_; }
  // From now on the first request of each address is answered by its server, not from the cache.
  void BypassCacheOnce() { renewed_.emplace(); }

  void interceptRequest(QWebEngineUrlRequestInfo& request) override;

  // How a blocked address is named to the user: its host, with the port if it is not the scheme's
  // own, or only the scheme if there is no host.
  static QString NameOf(const QUrl& url);

  const PageRequests& Requests() const { return requests_; }

 Q_SIGNALS:
  // A request was blocked: the first of its origin. `is_navigation_by_router` is true where the
  // router itself sent the page or a frame there (a redirect, a link, a script); then the user may
  // want to allow it.
  void blocked(const QUrl& url, bool is_navigation_by_router);

 private:
  SiteOrigin router_;
  QSet<SiteOrigin> allowed_;
  QSet<SiteOrigin> reported_;
  std::optional<QSet<QUrl>> renewed_;  // the addresses requested since the cache was emptied
  PageRequests requests_;
};

}  // namespace quayline
