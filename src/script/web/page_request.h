// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include "script/web/web_page.h"

namespace quayline {

class WebProfile;

// Makes the engine request a page, and decides whether it shows its own error page when that fails.
// PageLoads owns it.
class PageRequest final : public QObject {
 public:
  PageRequest(WebProfile& profile, QObject* parent);

  void SetPage(WebPage* page) { page_ = page; }

  // Whether `url` is a place within the document on show.
  bool IsWithinPage(const QUrl& url) const;
  void Send(const QUrl& url);
  // Fetches the page on show again, past all caches, by GET.
  void Reload();
  // Drops a request that was not handed to the engine yet. False if there is none.
  bool Cancel();

  // Without an error page of its own a failed load leaves the page as it was. For a frame there is
  // no other sign that it failed. So the user's option counts while a page loads, and the pages are
  // shown from the moment that its document is there. True when that is a change, which the page
  // hears of a little later.
  bool ShowErrorPages(bool shown);
  bool ShowErrorPagesAsChosen();

 private:
  WebProfile& profile_;
  QPointer<WebPage> page_;
  QUrl url_;
  QTimer delay_;
};

}  // namespace quayline
