// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stress/navigation_stress.h"

#include <QApplication>
#include <QThread>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "async/flow.h"
#include "script/web/web_engine.h"

namespace {

using quayline::stress::AllWays;
using quayline::stress::WayResult;

// The numbers of the ways that a word names: by number, or by a part of the name.
std::vector<size_t> NamedBy(const std::string& word) {
  std::vector<size_t> found;
  for (size_t way = 0; way < AllWays().size(); ++way) {
    const std::string name = AllWays()[way].name;
    if (word == std::to_string(way) || name.find(word) != std::string::npos) {
      found.push_back(way);
    }
  }
  return found;
}

int ListWays() {
  for (size_t way = 0; way < AllWays().size(); ++way) {
    std::printf("%3zu  %s\n", way, AllWays()[way].name);
  }
  return 0;
}

int Report(const QList<WayResult>& results) {
  int missed = 0;
  int all_steps = 0;
  std::printf("%-40s %6s %5s %6s %7s %9s %9s\n", "way", "steps", "lost", "early", "failed",
              "click ms", "step ms");
  for (const WayResult& result : results) {
    missed += result.lost + result.early + result.failed + (result.is_slow ? 1 : 0);
    all_steps += result.steps;
    std::printf("%-40s %6d %5d %6d %7d %9.1f %9.1f%s\n", result.way->name, result.steps,
                result.lost, result.early, result.failed, result.click_ms, result.step_ms,
                result.is_slow ? " slow" : "");
  }
  std::printf("%d steps, %d missed\n", all_steps, missed);
  return missed == 0 ? 0 : 1;
}

}  // namespace

// Walks through pages that leave in every way there is, and counts what a job's waits missed.
// Arguments: steps per way (default 25), threads that keep the processor busy (default 0), ways by
// number or by a part of the name (default all). The one word "list" prints the ways.
int main(int argc, char** argv) {
  constexpr int kDefaultSteps = 25;
  constexpr int kFirstWay = 3;
  if (argc > 1 && std::string(argv[1]) == "list") {
    return ListWays();
  }
  quayline::stress::StressOptions stress;
  stress.steps_per_way = argc > 1 ? std::atoi(argv[1]) : kDefaultSteps;
  const int hogs = argc > 2 ? std::atoi(argv[2]) : 0;
  for (int i = kFirstWay; i < argc; ++i) {
    const std::vector<size_t> named = NamedBy(argv[i]);
    stress.ways.insert(stress.ways.end(), named.begin(), named.end());
  }
  if (argc <= kFirstWay) {
    stress.ways = NamedBy("");
  }
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
                                         std::move(stress), &results));
  QApplication::exec();
  over = true;
  return Report(results);
}
