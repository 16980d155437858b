// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QStringList>

#include <memory>

namespace quayline {

// The right to work on one router. The last holder releases it, and the system does when the
// process ends in any way: no lock remains.
class RouterLock;

// Keeps two programs from working on one router at the same time, where each would overtake the
// saves of the other. A lock is an empty file, locked in each of the folders; one folder is this
// user's own, another may be shared by the users of this computer.
//
// Nothing here waits. A file that cannot be made or locked (a read-only folder, a full disk)
// prevents nothing.
class RouterLocks final {
 public:
  // Locks nothing.
  RouterLocks() = default;
  explicit RouterLocks(QStringList folders) : folders_(std::move(folders)) {}

  // The folders that the programs lock in.
  static QStringList SystemFolders();

  // `router` is how the programs name it, see RouterKey(). Nothing: another program works on it. A
  // lock that this process has already is shared.
  std::shared_ptr<const RouterLock> TryTake(const QString& router);

 private:
  QStringList folders_;
  QHash<QString, std::weak_ptr<const RouterLock>> taken_;
};

}  // namespace quayline
