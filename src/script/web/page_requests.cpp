// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/page_requests.h"

namespace quayline {

namespace {

constexpr qsizetype kMaxNotes = 1000;  // a page can request other addresses without end

QUrl Key(const QUrl& url) { return url.adjusted(QUrl::RemoveFragment | QUrl::RemoveUserInfo); }

template <typename Value>
void Remember(QHash<QUrl, Value>& notes, const QUrl& url, const Value& value) {
  if (notes.size() >= kMaxNotes) {
    notes.clear();
  }
  notes.insert(Key(url), value);
}

}  // namespace

void PageRequests::Note(const QWebEngineUrlRequestInfo& request) {
  if (request.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame) {
    Remember(top_methods_, request.requestUrl(), request.requestMethod());
  }
  Remember(kinds_, request.requestUrl(), request.resourceType());
}

QByteArray PageRequests::TopMethod(const QUrl& url) const { return top_methods_.value(Key(url)); }

PageRequests::Kind PageRequests::KindOf(const QUrl& url) const {
  return kinds_.value(Key(url), QWebEngineUrlRequestInfo::ResourceTypeUnknown);
}

}  // namespace quayline
