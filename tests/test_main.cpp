// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "test_main.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quayline::testing {

bool RunUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  QElapsedTimer timer;
  timer.start();
  QTimer wake;
  wake.start(1);
  while (!condition()) {
    if (timer.hasExpired(limit.count())) {
      return false;
    }
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

bool RunTask(Task<> task, std::chrono::milliseconds limit) {
  Flow flow;
  flow.Start(std::move(task));
  return RunUntil([&] { return !flow.IsRunning(); }, limit);
}

}  // namespace quayline::testing

// A binary that needs the browser defines this to prepare it before QApplication is made.
extern "C" [[gnu::weak]] void QuaylinePrepareTestBinary() {}

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  // Journals of jobs, also of programs that the tests start, are none of the user's.
  const QTemporaryDir state;
  qputenv("XDG_STATE_HOME", state.path().toLocal8Bit());
  QuaylinePrepareTestBinary();
  testing::InitGoogleTest(&argc, argv);
  // A test may start its own program again, which is not to write a report beside this one's.
  qunsetenv("GTEST_OUTPUT");
  QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
