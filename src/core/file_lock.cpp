// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/file_lock.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace quayline {

FileLock::FileLock(const QString& path, std::chrono::milliseconds limit)
    : descriptor_(open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
  constexpr unsigned long kPauseMs = 5;
  if (descriptor_ < 0) {
    return;
  }
  const QDeadlineTimer deadline(limit);
  while (flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && (errno == EWOULDBLOCK || errno == EINTR)) {
    if (deadline.hasExpired()) {
      is_locked_ = false;
      return;
    }
    QThread::msleep(kPauseMs);
  }
}

FileLock::~FileLock() {
  if (descriptor_ >= 0) {
    close(descriptor_);
  }
}

}  // namespace quayline
