// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <chrono>

namespace quayline {

// Keeps instances of the program from writing the same files at once. It is the system's lock on a
// file or a folder: the system releases it when the process ends in any way, and nothing remains on
// the disk.
class FileLock final {
 public:
  // Waits for the lock on `path`, which exists, up to `limit`.
  FileLock(const QString& path, std::chrono::milliseconds limit);
  ~FileLock();
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  // False only when another process holds the lock. A file system without locks, and a `path` that
  // cannot be opened, count as locked: a write then fails by itself if it must.
  bool IsLocked() const { return is_locked_; }

 private:
  int descriptor_ = -1;
  bool is_locked_ = true;
};

}  // namespace quayline
