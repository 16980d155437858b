// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stress/navigation_stress.h"

#include <QApplication>
#include <QThread>

#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

#include "async/flow.h"
#include "script/web/web_engine.h"

// Walks through pages that leave in every way there is, and counts what a job's waits missed.
// Arguments: steps per way (default 25), threads that keep the processor busy (default 0).
int main(int argc, char** argv) {
  using quayline::stress::WayResult;
  constexpr int kDefaultSteps = 25;
  const int steps = argc > 1 ? std::atoi(argv[1]) : kDefaultSteps;
  const int hogs = argc > 2 ? std::atoi(argv[2]) : 0;
  qputenv("QT_QPA_PLATFORM", "offscreen");
  quayline::PrepareWebEngine();
  QApplication application(argc, argv);

  std::atomic<bool> over = false;
  std::vector<std::jthread> busy;
  for (int i = 0; i < hogs; ++i) {
    busy.emplace_back([&over] {
      while (!over) {
      }
    });
  }
  const quayline::JobOptions options;
  const quayline::Translator translator{QString()};
  QList<WayResult> results;
  quayline::Flow flow;
  QObject::connect(&flow, &quayline::Flow::ended, &application, &QCoreApplication::quit);
  flow.Start(quayline::stress::RunStress(quayline::WebPageHosts(options, translator),
                                         {.steps_per_way = steps}, &results));
  QApplication::exec();
  over = true;

  int missed = 0;
  int all_steps = 0;
  std::printf("%-34s %6s %5s %6s %7s %9s\n", "way", "steps", "lost", "early", "failed", "click ms");
  for (const WayResult& result : results) {
    missed += result.lost + result.early + result.failed;
    all_steps += result.steps;
    std::printf("%-34s %6d %5d %6d %7d %9.1f\n", result.way->name, result.steps, result.lost,
                result.early, result.failed, result.click_ms);
  }
  std::printf("%d steps, %d missed\n", all_steps, missed);
  return missed == 0 ? 0 : 1;
}
