// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/page_request.h"

#include <QWebEngineSettings>

#include <chrono>

#include "script/web/web_page.h"
#include "script/web/web_profile.h"

namespace quayline {

PageRequest::PageRequest(WebProfile& profile, QObject* parent)
    : QObject(parent), profile_(profile) {
  delay_.setSingleShot(true);
  connect(&delay_, &QTimer::timeout, this, [this] { page_->load(url_); });
}

bool PageRequest::IsWithinPage(const QUrl& url) const {
  const QUrl current = page_->url();
  return url.hasFragment() && url != current &&
         url.adjusted(QUrl::RemoveFragment) == current.adjusted(QUrl::RemoveFragment);
}

void PageRequest::Send(const QUrl& url) {
  constexpr std::chrono::milliseconds kSettingArrives(1);
  url_ = url;
  if (ShowErrorPagesAsChosen()) {
    delay_.start(kSettingArrives);
  } else {
    page_->load(url);
  }
}

void PageRequest::Reload() {
  if (profile_.Guard().Requests().TopMethod(page_->url()) != "POST") {
    page_->triggerAction(QWebEnginePage::ReloadAndBypassCache);
    return;
  }
  // The engine would send the form again, and the router would save twice.
  profile_.BypassCacheOnce();
  page_->load(page_->url());
}

bool PageRequest::Cancel() {
  const bool was_delayed = delay_.isActive();
  delay_.stop();
  return was_delayed;
}

bool PageRequest::ShowErrorPages(bool shown) {
  QWebEngineSettings* const settings = page_->settings();
  if (settings->testAttribute(QWebEngineSettings::ErrorPageEnabled) == shown) {
    return false;
  }
  settings->setAttribute(QWebEngineSettings::ErrorPageEnabled, shown);
  return true;
}

bool PageRequest::ShowErrorPagesAsChosen() {
  return ShowErrorPages(!profile_.Options().silent_mode);
}

}  // namespace quayline
