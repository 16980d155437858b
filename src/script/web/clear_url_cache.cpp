// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QPointer>

#include "async/wait.h"
#include "script/web/url_cache.h"
#include "script/web/web_engine.h"
#include "script/web/web_page_host.h"

namespace quayline {

namespace {

constexpr std::chrono::seconds kLoadLimit(2);

}  // namespace

Task<bool> ClearUrlCache() {
  QList<QPointer<WebPageHost>> hosts;
  for (WebPageHost* host : WebPageHost::All()) {
    hosts.append(host);
  }
  QList<std::shared_ptr<WebProfile>> profiles;
  for (const QPointer<WebPageHost>& host : hosts) {
    if (host != nullptr && host->Navigation().busy) {
      const bool is_loaded =
          co_await Until([host] { return host == nullptr || !host->Navigation().busy; })
              .WokenBy(host.data(), &PageHost::navigationChanged)
              .AtMost(kLoadLimit);
      if (!is_loaded) {
        co_return false;
      }
    }
    if (host != nullptr && !profiles.contains(host->Profile())) {
      profiles.append(host->Profile());
    }
  }
  const bool cleared = co_await ClearCachesOf(std::move(profiles));
  co_return cleared;
}

}  // namespace quayline
