// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stress/navigation_stress.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QProcess>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
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

struct Arguments {
  int lanes = 1;
  bool lists_ways = false;
  int steps = 25;
  int hogs = 0;
  std::vector<size_t> ways;  // empty: all
  QStringList words;         // as given, without the lanes
};

// Ends the process for --help and wrong options.
Arguments ReadArguments(const QStringList& words) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Walks through pages that navigate in every way, and counts what the waits of "
                     "a job missed."));
  const QCommandLineOption help(QStringLiteral("help"), QStringLiteral("Shows this text."));
  const QCommandLineOption lanes(QStringLiteral("lanes"),
                                 QStringLiteral("Walks N times in parallel (1)."),
                                 QStringLiteral("N"), QStringLiteral("1"));
  parser.addOptions({help, lanes});
  parser.addPositionalArgument(QStringLiteral("steps"),
                               QStringLiteral("Steps for each way (25), or \"list\" for the ways."),
                               QStringLiteral("[steps"));
  parser.addPositionalArgument(QStringLiteral("hogs"),
                               QStringLiteral("Threads that keep the processor busy (0)."),
                               QStringLiteral("[hogs"));
  parser.addPositionalArgument(QStringLiteral("ways"),
                               QStringLiteral("Ways, by number or by a part of the name (all)."),
                               QStringLiteral("[ways...]]]"));
  const bool is_parsed = parser.parse(words);
  if (!is_parsed || parser.isSet(help)) {
    const QString text = is_parsed ? parser.helpText() : parser.errorText() + QLatin1Char('\n');
    std::fputs(qPrintable(text), is_parsed ? stdout : stderr);
    std::exit(is_parsed ? 0 : 2);
  }
  Arguments arguments;
  arguments.words = parser.positionalArguments();
  arguments.lanes = parser.value(lanes).toInt();
  arguments.lists_ways = arguments.words.value(0) == QLatin1String("list");
  if (!arguments.words.isEmpty()) {
    arguments.steps = arguments.words.first().toInt();
  }
  arguments.hogs = arguments.words.value(1).toInt();
  for (const QString& word : arguments.words.mid(2)) {
    const std::vector<size_t> ways = NamedBy(word.toStdString());
    arguments.ways.insert(arguments.ways.end(), ways.begin(), ways.end());
  }
  return arguments;
}

}  // namespace

int main(int argc, char** argv) {
  QStringList words;
  for (int i = 0; i < argc; ++i) {
    words.append(QString::fromLocal8Bit(argv[i]));
  }
  Arguments arguments = ReadArguments(words);
  if (arguments.lists_ways) {
    return ListWays();
  }
  const Hogs hogs(arguments.hogs);
  if (arguments.lanes > 1) {
    if (arguments.words.size() > 1) {
      arguments.words[1] = QStringLiteral("0");
    }
    return RunLanes(arguments.lanes, argv[0], arguments.words);
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  quayline::PrepareWebEngine();
  QApplication application(argc, argv);

  const quayline::JobOptions options;
  const quayline::Translator translator{QString()};
  QList<WayResult> results;
  quayline::Flow flow;
  QObject::connect(&flow, &quayline::Flow::ended, &application, &QCoreApplication::quit);
  flow.Start(quayline::stress::RunStress(
      quayline::WebPageHosts(options, translator),
      {.steps_per_way = arguments.steps, .ways = std::move(arguments.ways)}, &results));
  QApplication::exec();
  return Report(results);
}
