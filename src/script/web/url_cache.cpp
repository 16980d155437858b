// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/url_cache.h"

#include <QDir>
#include <QFileInfo>

#include "async/wait.h"
#include "script/wait_limits.h"
#include "script/web/web_profile.h"

namespace quayline {

namespace {

Task<bool> ClearMemory(std::shared_ptr<WebProfile> profile) {
  // What a request is still reading stays in the cache, and would be the answer to the next one.
  profile->BypassCacheOnce();
#if QT_VERSION >= QT_VERSION_CHECK(6, 7, 0)
  constexpr std::chrono::seconds kClearLimit(10);
  OneShot<bool> ended;
  QObject::connect(
      &profile->Engine(), &QWebEngineProfile::clearHttpCacheCompleted, profile.get(),
      [deliver = ended.Callback()] { deliver(true); }, Qt::SingleShotConnection);
  ended.GiveUpAfter(kClearLimit);
  profile->Engine().clearHttpCache();
  const std::optional<bool> has_ended = co_await ended;
  co_return has_ended.has_value();
#else
  // This engine reports no end. A load that starts before it would hang.
  profile->Engine().clearHttpCache();
  co_await Sleep(WaitLimits().cache_clearing);
  co_return true;
#endif
}

}  // namespace

bool RemoveEngineFolder(QStandardPaths::StandardLocation place) {
  const QString folder = QStandardPaths::writableLocation(place) + QStringLiteral("/QtWebEngine");
  // Of a link only the link is ours.
  const QFileInfo found(folder);
  return found.isSymLink() ? QFile::remove(folder)
                           : !found.exists() || QDir(folder).removeRecursively();
}

Task<bool> ClearCachesOf(QList<std::shared_ptr<WebProfile>> profiles) {
  // Profiles of jobs keep nothing on the disk, but the engine may, and older versions did.
  bool cleared = RemoveEngineFolder(QStandardPaths::CacheLocation);
  for (const std::shared_ptr<WebProfile>& profile : profiles) {
    const bool in_memory = co_await ClearMemory(profile);
    cleared = cleared && in_memory;
  }
  co_return cleared;
}

}  // namespace quayline
