// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/router_lock.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "test_main.h"

namespace quayline {
namespace {

const QString kRouter = QStringLiteral("192.168.1.1");

// Two objects act as two programs: locks belong to open files.
class RouterLockTest : public ::testing::Test {
 protected:
  QTemporaryDir own_;
  QTemporaryDir shared_;
  const QStringList folders_{own_.path(), shared_.path()};
  RouterLocks one_{folders_};
  RouterLocks other_{folders_};
};

TEST_F(RouterLockTest, OneProgramAtATimeHasARouter) {
  auto lock = one_.TryTake(kRouter);
  ASSERT_NE(lock, nullptr);
  EXPECT_EQ(other_.TryTake(kRouter), nullptr);
  EXPECT_NE(other_.TryTake(QStringLiteral("192.168.1.2")), nullptr) << "another router is free";
  auto second = one_.TryTake(kRouter);
  lock.reset();
  EXPECT_EQ(other_.TryTake(kRouter), nullptr) << "the program's second holder still works";
  second.reset();
  EXPECT_NE(other_.TryTake(kRouter), nullptr);
  EXPECT_TRUE(QDir(own_.path()).isEmpty()) << "a lock is left behind";
}

TEST_F(RouterLockTest, AnotherUserSharesOneFolderOnly) {
  RouterLocks of_another_user({QStringLiteral("/nowhere"), shared_.path()});
  const auto lock = one_.TryTake(kRouter);
  EXPECT_EQ(of_another_user.TryTake(kRouter), nullptr);
}

TEST_F(RouterLockTest, AProgramThatIsKilledLeavesTheRouterFree) {
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const auto lock = one_.TryTake(kRouter);
    const char taken = lock == nullptr ? 'n' : 'y';
    [[maybe_unused]] const ssize_t written = write(ready[1], &taken, 1);
    pause();
    _exit(0);
  }
  char taken = 0;
  ASSERT_EQ(read(ready[0], &taken, 1), 1);
  EXPECT_EQ(taken, 'y');
  EXPECT_EQ(other_.TryTake(kRouter), nullptr);
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_NE(other_.TryTake(kRouter), nullptr);
}

TEST_F(RouterLockTest, AFileThatCannotBeLockedKeepsNobodyFromWorking) {
  QString name;
  {
    const auto lock = one_.TryTake(kRouter);
    name = QDir(own_.path()).entryList(QDir::Files).value(0);
  }
  ASSERT_FALSE(name.isEmpty());
  const QByteArray path = QFile::encodeName(own_.filePath(name));
  const auto target = QFile::encodeName(own_.filePath(QStringLiteral("target")));
  const std::function<void()> pranks[] = {
      [&] { mkdir(path, 0700); },
      [&] { mkfifo(path, 0600); },
      [&] { EXPECT_EQ(symlink(target, path), 0); },
  };
  for (const auto& prank : pranks) {
    prank();
    RouterLocks locks({own_.path()});
    EXPECT_NE(locks.TryTake(kRouter), nullptr);
    EXPECT_EQ(unlink(path) == 0 || rmdir(path) == 0, true) << "somebody else's file was removed";
  }
  EXPECT_FALSE(QFile::exists(QString::fromLocal8Bit(target)));
  RouterLocks nowhere({QStringLiteral("/proc/nowhere"), QString()});
  EXPECT_NE(nowhere.TryTake(kRouter), nullptr);
}

}  // namespace
}  // namespace quayline
