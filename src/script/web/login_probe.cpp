// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/login_probe.h"

#include <QWebEngineLoadingInfo>

#include "script/web/web_page.h"

namespace quayline {

LoginProbe::LoginProbe(std::unique_ptr<WebPage> page, const QUrl& url) : page_(std::move(page)) {
  connect(
      page_.get(), &QWebEnginePage::loadingChanged, this,
      [this](const QWebEngineLoadingInfo& info) {
        if (info.status() != QWebEngineLoadingInfo::LoadStartedStatus) {
          Q_EMIT over(info.status() != QWebEngineLoadingInfo::LoadFailedStatus ||
                      info.errorDomain() == QWebEngineLoadingInfo::HttpStatusCodeDomain);
        }
      },
      Qt::QueuedConnection);
  page_->load(url);
}

LoginProbe::~LoginProbe() = default;

}  // namespace quayline
