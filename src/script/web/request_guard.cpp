// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/request_guard.h"

namespace quayline {

namespace {

// Schemes whose content comes from the page itself.
bool StaysInPage(const QString& scheme) {
  static const QSet<QString> schemes{QStringLiteral("data"), QStringLiteral("blob"),
                                     QStringLiteral("about"), QStringLiteral("chrome-error")};
  return schemes.contains(scheme);
}

bool IsNavigation(const QWebEngineUrlRequestInfo& request) {
  return request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame ||
         request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeSubFrame;
}

// Besides a form that is posted: many pages save by an address with a query.
bool MayChange(const QWebEngineUrlRequestInfo& request) {
  const QByteArray method = request.requestMethod();
  return (method != "GET" && method != "HEAD") ||
         (IsNavigation(request) && request.requestUrl().hasQuery());
}

// What a page shows of the router comes in documents, or is fetched by a script.
bool ShowsTheRouter(const QWebEngineUrlRequestInfo& request) {
  return IsNavigation(request) ||
         request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeXhr;
}

}  // namespace

void RequestGuard::SetRouter(const SiteOrigin& router) {
  if (router != router_) {
    router_ = router;
    allowed_ = {router};
    reported_.clear();
  }
}

void RequestGuard::Allow(const SiteOrigin& origin) { allowed_.insert(origin); }

void RequestGuard::interceptRequest(QWebEngineUrlRequestInfo& request) {
  requests_.Note(request);
  const QUrl url = request.requestUrl();
  const SiteOrigin origin = SiteOrigin::Of(url);
  if (url.scheme() == QLatin1String("http")) {
    // Most routers then end the connection with the answer, and no second request is sent on it.
    request.setHttpHeader("Connection", "close");
  }
  if (renewed_ && request.requestMethod() == "GET" && !renewed_->contains(url)) {
    renewed_->insert(url);
    request.setHttpHeader("Cache-Control", "no-cache");
  } else if (request.requestMethod() == "GET" && ShowsTheRouter(request)) {
    // A page that the router lets the browser keep would show the rules of before the save.
    request.setHttpHeader("Cache-Control", "max-age=0");
  }
  if (url.scheme() == QLatin1String("https") && MayChange(request)) {
    RouterGate::Instance().ExpectChange(origin);
  }
  if (url.scheme() == QLatin1String("wss")) {
    RouterGate::Instance().ExpectWebSocket(origin);
  }
  if (allowed_.isEmpty() || allowed_.contains(origin) || StaysInPage(url.scheme())) {
    return;
  }
  request.block(true);
  if (!reported_.contains(origin)) {
    reported_.insert(origin);
    const bool is_redirect =
        request.navigationType() == QWebEngineUrlRequestInfo::NavigationTypeRedirect;
    const bool is_by_router = is_redirect || allowed_.contains(SiteOrigin::Of(request.initiator()));
    Q_EMIT blocked(url, IsNavigation(request) && is_by_router);
  }
}

QString RequestGuard::NameOf(const QUrl& url) {
  if (url.host().isEmpty()) {
    return url.scheme();
  }
  return url.port() < 0 ? url.host() : QStringLiteral("%1:%2").arg(url.host()).arg(url.port());
}

}  // namespace quayline
