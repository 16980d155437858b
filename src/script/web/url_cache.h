// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QStandardPaths>

#include <memory>

#include "async/task.h"

namespace quayline {

class WebPageHost;
class WebProfile;

// Removes what the engine keeps in a folder of the program. Whether nothing is left.
bool RemoveEngineFolder(QStandardPaths::StandardLocation place);

// Empties the caches of these profiles in memory, and the cache of the program on the disk. No page
// of them may be loading: the engine would never end its load. False if the engine does not report
// the end, where it reports any, or a file cannot be removed.
Task<bool> ClearCachesOf(QList<std::shared_ptr<WebProfile>> profiles);
// Those of the profiles of these browsers, which it waits for first. False also if one of them is
// still loading after a moment.
Task<bool> ClearCachesOf(QList<WebPageHost*> browsers);

}  // namespace quayline
