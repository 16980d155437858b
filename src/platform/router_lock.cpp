// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/router_lock.h"

#include <QCryptographicHash>
#include <QStandardPaths>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quayline {

namespace {

enum class Attempt { kTaken, kBusy, kImpossible };

// The file of a former holder, or a new one. Another user's file can be locked as well, if it can
// be read. Anything but a plain file was not made by this program.
int OpenLockFile(const char* path) {
  int file = open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0 && errno == ENOENT) {
    constexpr mode_t kReadableByAll = 0644;
    file = open(path, O_RDONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kReadableByAll);
    if (file >= 0) {
      fchmod(file, kReadableByAll);  // whatever the umask leaves
    }
  }
  struct stat status{};
  if (file >= 0 && (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))) {
    close(file);
    return -1;
  }
  return file;
}

// A holder removes its file when it releases the lock: a lock on a removed file locks nothing.
bool IsStillThere(int file, const char* path) {
  struct stat locked{};
  struct stat named{};
  return fstat(file, &locked) == 0 && lstat(path, &named) == 0 && locked.st_ino == named.st_ino &&
         locked.st_dev == named.st_dev;
}

}  // namespace

class RouterLock final {
 public:
  RouterLock() = default;
  RouterLock(const RouterLock&) = delete;
  RouterLock& operator=(const RouterLock&) = delete;
  ~RouterLock() {
    for (const auto& [file, path] : files_) {
      unlink(path.constData());
      close(file);
    }
  }

  Attempt Take(const QByteArray& path) {
    constexpr int kTries = 10;  // others may make and remove the file meanwhile
    for (int i = 0; i < kTries; ++i) {
      const int file = OpenLockFile(path.constData());
      if (file < 0) {
        if (errno == EEXIST || errno == ENOENT) {
          continue;
        }
        return Attempt::kImpossible;
      }
      if (flock(file, LOCK_EX | LOCK_NB) != 0) {
        const bool is_busy = errno == EWOULDBLOCK;
        close(file);
        return is_busy ? Attempt::kBusy : Attempt::kImpossible;
      }
      if (IsStillThere(file, path.constData())) {
        files_.emplace_back(file, path);
        return Attempt::kTaken;
      }
      close(file);
    }
    return Attempt::kImpossible;
  }

 private:
  std::vector<std::pair<int, QByteArray>> files_;
};

QStringList RouterLocks::SystemFolders() {
  return {QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation),
          QStringLiteral("/tmp")};
}

std::shared_ptr<const RouterLock> RouterLocks::TryTake(const QString& router) {
  if (auto shared = taken_.value(router).lock()) {
    return shared;
  }
  // A hash, since names of hosts are long and are typed by the user.
  const QByteArray hash = QCryptographicHash::hash(router.toUtf8(), QCryptographicHash::Sha256);
  const QString name =
      QStringLiteral("/quayline-router-%1.lock").arg(QLatin1String(hash.toHex().first(16)));
  auto lock = std::make_shared<RouterLock>();
  for (const QString& folder : std::as_const(folders_)) {
    if (!folder.isEmpty() && lock->Take((folder + name).toLocal8Bit()) == Attempt::kBusy) {
      return nullptr;
    }
  }
  taken_[router] = lock;
  return lock;
}

}  // namespace quayline
