// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stress/navigation_stress.h"

#include <QApplication>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "async/flow.h"
#include "script/web/web_engine.h"

namespace {

using quayline::stress::AllWays;
using quayline::stress::WayResult;

// The numbers of the ways that an argument names, by number or by a part of the name.
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

// Runs the same program several times side by side, and adds up how they end.
int RunLanes(int lanes, const char* program, const QStringList& words) {
  std::vector<std::unique_ptr<QProcess>> running;
  for (int lane = 0; lane < lanes; ++lane) {
    auto& process = running.emplace_back(std::make_unique<QProcess>());
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->start(QString::fromLocal8Bit(program), words);
  }
  int failed = 0;
  for (const auto& process : running) {
    process->waitForFinished(-1);
    failed += process->exitStatus() != QProcess::NormalExit || process->exitCode() != 0 ? 1 : 0;
  }
  std::printf("%d lanes, %d missed something\n", lanes, failed);
  return failed == 0 ? 0 : 1;
}

// Threads that keep the processor busy while it lives.
class Hogs final {
 public:
  explicit Hogs(int count) {
    for (int i = 0; i < count; ++i) {
      threads_.emplace_back([](const std::stop_token& over) {
        while (!over.stop_requested()) {
        }
      });
    }
  }

 private:
  std::vector<std::jthread> threads_;
};

}  // namespace

// Walks through pages that leave in every way there is, and counts what a job's waits missed.
// Arguments: steps per way (default 25), threads that keep the processor busy (default 0), ways by
// number or by a part of the name (default all). "--lanes N" before them walks N times in parallel.
// The single argument "list" prints the ways.
int main(int argc, char** argv) {
  constexpr int kDefaultSteps = 25;
  QStringList words;
  for (int i = 1; i < argc; ++i) {
    words.append(QString::fromLocal8Bit(argv[i]));
  }
  if (words.value(0) == QLatin1String("list")) {
    return ListWays();
  }
  int lanes = 1;
  if (words.value(0) == QLatin1String("--lanes")) {
    lanes = words.value(1).toInt();
    words.remove(0, std::min<qsizetype>(words.size(), 2));
  }
  const Hogs hogs(words.value(1).toInt());
  if (lanes > 1) {
    if (words.size() > 1) {
      words[1] = QStringLiteral("0");
    }
    return RunLanes(lanes, argv[0], words);
  }
  quayline::stress::StressOptions stress;
  stress.steps_per_way = words.isEmpty() ? kDefaultSteps : words.first().toInt();
  for (const QString& word : words.sliced(std::min<qsizetype>(words.size(), 2))) {
    const std::vector<size_t> ways = NamedBy(word.toStdString());
    stress.ways.insert(stress.ways.end(), ways.begin(), ways.end());
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  quayline::PrepareWebEngine();
  QApplication application(argc, argv);

  const quayline::JobOptions options;
  const quayline::Translator translator{QString()};
  QList<WayResult> results;
  quayline::Flow flow;
  QObject::connect(&flow, &quayline::Flow::ended, &application, &QCoreApplication::quit);
  flow.Start(quayline::stress::RunStress(quayline::WebPageHosts(options, translator),
                                         std::move(stress), &results));
  QApplication::exec();
  return Report(results);
}
