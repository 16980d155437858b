// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QSignalSpy>

#include <atomic>
#include <gtest/gtest.h>

#include "async/wait.h"
#include "async/worker.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace std::chrono_literals;

class Bell : public QObject {
  Q_OBJECT

 public:
  int rings = 0;
  void Ring() {
    ++rings;
    Q_EMIT rang();
  }

 Q_SIGNALS:
  void rang();
};

// Writes its name when its frame is destroyed.
struct Mark {
  QString& order;
  QString name;
  ~Mark() { order += name; }
};

Task<int> Doubled(Bell* bell, int value) {
  co_await Until([bell] { return bell->rings > 0; }).WokenBy(bell, &Bell::rang);
  co_return 2 * value;
}

TEST(Task, ASignalRaisedTwiceResumesOnceAndNotInsideTheEmitter) {
  Bell bell;
  QString order;
  Flow flow;
  flow.Start([](Bell* b, QString* out) -> Task<> {
    const int result = co_await Doubled(b, 21);
    *out += QString::number(result);
  }(&bell, &order));
  bell.Ring();
  bell.Ring();
  order += QLatin1Char('r');
  EXPECT_TRUE(testing::RunUntil([&] { return !flow.IsRunning(); }));
  EXPECT_EQ(order, QStringLiteral("r42"));
}

TEST(Task, ACancelledFlowDestroysItsFramesInnerFirstAndNeverResumes) {
  Bell bell;
  QString order;
  {
    Flow flow;
    QSignalSpy ended(&flow, &Flow::ended);
    flow.Start([](Bell* b, QString* out) -> Task<> {
      const Mark outer{*out, QStringLiteral("outer ")};
      co_await [](Bell* inner_bell, QString* inner_out) -> Task<> {
        const Mark inner{*inner_out, QStringLiteral("inner ")};
        co_await Until([inner_bell] {
          return inner_bell->rings > 0;
        }).WokenBy(inner_bell, &Bell::rang);
        *inner_out += QStringLiteral("resumed ");
      }(b, out);
    }(&bell, &order));
    bell.Ring();  // the resume is on its way when the flow is cancelled
    flow.Cancel();
    QCoreApplication::processEvents();
    EXPECT_EQ(ended.count(), 0);
  }
  EXPECT_EQ(order, QStringLiteral("inner outer "));
}

TEST(OneShot, AnAnswerAfterTheWaiterIsGoneIsDropped) {
  const std::function<void(int)> late = OneShot<int>().Callback();
  late(1);
  QCoreApplication::processEvents();
}

TEST(OneShot, GivesUpBeforeDuringAndAfterTheWait) {
  const struct {
    const char* name;
    int rings_before;
    bool answered;
    bool rung;
    std::optional<int> expected;
  } cases[] = {{"given up before", 1, false, false, {}},
               {"answered", 0, true, false, 7},
               {"answered, then given up", 0, true, true, 7},
               {"given up", 0, false, true, {}}};
  for (const auto& c : cases) {
    Bell bell;
    bell.rings = c.rings_before;
    OneShot<int> shot;
    shot.GiveUpWhen(&bell, &Bell::rang, [&] { return bell.rings > 0; });
    const auto answer = shot.Callback();
    std::optional<int> got = -1;
    Flow flow;
    flow.Start([](OneShot<int> s, std::optional<int>* out) -> Task<> { *out = co_await s; }(
                                                               std::move(shot), &got));
    if (c.answered) {
      answer(7);
      answer(8);  // Only the first counts.
    }
    if (c.rung) {
      bell.Ring();
    }
    EXPECT_TRUE(testing::RunUntil([&] { return !flow.IsRunning(); }, 2s)) << c.name;
    EXPECT_EQ(got, c.expected) << c.name;
  }
}

TEST(Until, TheTimeRunsOut) {
  bool held = true;
  EXPECT_TRUE(testing::RunTask(
      [](bool* out) -> Task<> { *out = co_await Until([] { return false; }).AtMost(5ms); }(&held)));
  EXPECT_FALSE(held);
}

TEST(Worker, TheEventLoopRunsMeanwhileAndACancelLeavesNothingBehind) {
  std::atomic<bool> may_end = false;
  std::atomic<bool> has_ended = false;
  const std::function<int()> work = [&] {
    while (!may_end && !QThread::currentThread()->isInterruptionRequested()) {
      QThread::msleep(1);
    }
    has_ended = true;
    return 42;
  };
  int result = 0;
  const auto run = [](std::function<int()> done_there, int* out) -> Task<> {
    *out = co_await RunInThread<int>(done_there);
  };
  Flow flow;
  flow.Start(run(work, &result));
  QTimer::singleShot(1, &flow, [&] { may_end = true; });
  EXPECT_TRUE(testing::RunUntil([&] { return !flow.IsRunning(); }));
  EXPECT_EQ(result, 42);

  may_end = has_ended = false;
  flow.Start(run(work, &result));
  flow.Cancel();
  EXPECT_TRUE(has_ended) << "it works on files that others use next";
}

}  // namespace
}  // namespace quayline

#include "task_test.moc"
