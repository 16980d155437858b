// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QWebEngineUrlRequestInterceptor>

namespace quayline {

// Keeps a job's browser on its router: whatever a page asks of another host is blocked, be it a
// picture, a frame, a script or the page itself. Nothing of the router's pages, and no address that
// names it, reaches anybody else. Every request over plain HTTP comes on a connection of its own.
class RequestGuard final : public QWebEngineUrlRequestInterceptor {
  Q_OBJECT

 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

  // The one host that may be asked, on any port. An empty host lets every request through.
  void SetHost(const QString& host);

  void interceptRequest(QWebEngineUrlRequestInfo& request) override;

 Q_SIGNALS:
  // The first request to `host` was blocked.
  void blocked(const QString& host);

 private:
  QString host_;
  QSet<QString> told_;
};

}  // namespace quayline
