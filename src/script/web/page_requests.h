// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QUrl>
#include <QWebEngineUrlRequestInfo>

namespace quayline {

// Remembers what the pages of a job requested. The engine asks the interceptor of a page only for
// requests that the interceptor of its profile left alone, so all pages share these notes.
class PageRequests final {
 public:
  using Kind = QWebEngineUrlRequestInfo::ResourceType;

  void Note(const QWebEngineUrlRequestInfo& request);

  // By which method `url` was requested last as a top document, redirects included. Empty when it
  // was not.
  QByteArray TopMethod(const QUrl& url) const;
  // The kind of the latest request for `url`; unknown when there was none.
  Kind KindOf(const QUrl& url) const;

 private:
  QHash<QUrl, QByteArray> top_methods_;
  QHash<QUrl, Kind> kinds_;
};

}  // namespace quayline
