// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "app/single_instance.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <future>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/files.h"
#include "test_main.h"

namespace quayline::testing {
namespace {

class SingleInstanceTest : public ::testing::Test {
 protected:
  QString Folder(const char* name) {
    QDir(dir_.path()).mkpath(QLatin1String(name));
    return dir_.filePath(QLatin1String(name));
  }

  // The second instance waits for its answer, as a process of its own does.
  template <typename Ask>
  static auto InSecond(const QString& folder, const Ask& ask) {
    auto answer = std::async(std::launch::async, [&] {
      SingleInstance second(folder);
      return ask(second);
    });
    EXPECT_TRUE(RunUntil(
        [&] { return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return answer.get();
  }
  static InstanceState TryInSecond(const QString& folder) {
    return InSecond(folder, [](SingleInstance& second) { return second.TryAcquire(); });
  }
  static bool HandOver(const QString& folder, const QString& file) {
    return InSecond(folder, [&](const SingleInstance& second) { return second.HandOver(file); });
  }

  QTemporaryDir dir_;
};

TEST_F(SingleInstanceTest, AFolderHasOneInstanceUnderEachOfItsNames) {
  const QString folder = Folder("one");
  QFile::link(folder, dir_.filePath(QStringLiteral("link")));
  SingleInstance first(folder);
  ASSERT_EQ(first.TryAcquire(), InstanceState::kAcquired);
  EXPECT_EQ(TryInSecond(folder), InstanceState::kRunning);
  EXPECT_EQ(TryInSecond(dir_.filePath(QStringLiteral("link"))), InstanceState::kRunning);
  EXPECT_EQ(TryInSecond(Folder("other")), InstanceState::kAcquired);
  first.Release();
  EXPECT_EQ(TryInSecond(folder), InstanceState::kAcquired);
}

TEST_F(SingleInstanceTest, NothingOnTheDiskKeepsItFromStarting) {
  const QByteArray host = QSysInfo::machineHostName().toUtf8();
  const QByteArray rows[] = {"", QByteArray(4096, '\xff'), "999999999\nquayline\n" + host + "\n",
                             "1\nquayline\n" + host + "\n",
                             QByteArray::number(getppid()) + "\nquayline\n" + host + "\n"};
  const QString folder = Folder("one");
  const auto acquires = [&folder] {
    return SingleInstance(folder).TryAcquire() == InstanceState::kAcquired;
  };
  for (const QByteArray& left : rows) {
    ASSERT_TRUE(WriteBytes(folder + QStringLiteral("/quayline.lock"), left));
    EXPECT_TRUE(acquires()) << left.constData();
  }
  EXPECT_TRUE(OnFullDisk(0, acquires));
  const ReadOnlyFolder read_only(folder);
  EXPECT_TRUE(acquires());
}

TEST_F(SingleInstanceTest, AProcessThatHangsIsWaitedForTwoSecondsAndOneThatWasKilledNotAtAll) {
  const QString folder = Folder("one");
  const pid_t hanging = fork();
  if (hanging == 0) {
    SingleInstance first(folder);
    first.TryAcquire();
    raise(SIGSTOP);
    _exit(0);
  }
  ASSERT_EQ(waitpid(hanging, nullptr, WUNTRACED), hanging);
  QElapsedTimer timer;
  timer.start();
  EXPECT_EQ(TryInSecond(folder), InstanceState::kNotAnswering);
  EXPECT_GE(timer.elapsed(), 1500) << "a busy instance has to have time to answer";
  kill(hanging, SIGKILL);
  ASSERT_EQ(waitpid(hanging, nullptr, 0), hanging);
  EXPECT_EQ(TryInSecond(folder), InstanceState::kAcquired);
}

TEST_F(SingleInstanceTest, AListReachesTheFirstInstanceWithEveryLetterOfItsName) {
  const QString folder = Folder("one");
  SingleInstance first(folder);
  ASSERT_EQ(first.TryAcquire(), InstanceState::kAcquired);
  QStringList requested;
  QObject::connect(&first, &SingleInstance::requested, &first,
                   [&](const QString& file) { requested.append(file); });
  const QStringList files = {QString(), QStringLiteral("/tmp/a list 100%.qyl"),
                             QString::fromUtf8("/tmp/Häfen\n№ 1.qyl")};
  EXPECT_TRUE(HandOver(folder, files[0]));
  EXPECT_TRUE(requested.isEmpty()) << "it is not ready yet";
  first.Listen();
  EXPECT_TRUE(HandOver(folder, files[1]));
  EXPECT_TRUE(HandOver(folder, files[2]));
  EXPECT_EQ(requested, files);
  first.Release();
  EXPECT_FALSE(HandOver(folder, files[0]));
}

}  // namespace
}  // namespace quayline::testing
