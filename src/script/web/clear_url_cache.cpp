// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QPointer>

#include <algorithm>

#include "async/wait.h"
#include "script/web/url_cache.h"
#include "script/web/web_engine.h"
#include "script/web/web_page_host.h"

namespace quayline {

namespace {

constexpr std::chrono::seconds kLoadLimit(2);

}  // namespace

Task<bool> ClearCachesOf(QList<WebPageHost*> browsers) {
  const QList<QPointer<WebPageHost>> hosts(browsers.begin(), browsers.end());
  Until loaded([&hosts] {
    return std::ranges::none_of(
        hosts, [](const auto& host) { return host != nullptr && host->Navigation().busy; });
  });
  for (WebPageHost* host : browsers) {
    std::move(loaded).WokenBy(host, &PageHost::navigationChanged);
  }
  const bool is_loaded = co_await std::move(loaded).AtMost(kLoadLimit);
  if (!is_loaded) {
    co_return false;
  }
  QList<std::shared_ptr<WebProfile>> profiles;
  for (const QPointer<WebPageHost>& host : hosts) {
    if (host != nullptr && !profiles.contains(host->Profile())) {
      profiles.append(host->Profile());
    }
  }
  const bool cleared = co_await ClearCachesOf(std::move(profiles));
  co_return cleared;
}

Task<bool> ClearUrlCache() { return ClearCachesOf(WebPageHost::All()); }

}  // namespace quayline
