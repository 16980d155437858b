// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "bench/job/race.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "bench/job/job_data.h"
#include "bench/median.h"
#include "core/port_list_file.h"

namespace quayline::bench {

namespace {

constexpr std::chrono::seconds kPatience(120);
constexpr double kNanosecondsPerMs = 1e6;

const QString kWholeProgram = QStringLiteral("quayline-cli");

[[noreturn]] void Fail(const QString& sentence) {
  std::fprintf(stderr, "%s\n", qPrintable(sentence));
  std::exit(2);
}

QString InFolderOf(const QString& program, const char* name) {
  return QFileInfo(program).dir().filePath(QLatin1String(name));
}

void WriteEntries(const QList<PortEntry>& entries, const QString& file_name) {
  QJsonArray array;
  for (const PortEntry& entry : entries) {
    const FieldValues fields = FieldsOf(entry);
    array.append(QJsonObject{{QStringLiteral("name"), fields.name},
                             {QStringLiteral("start"), fields.start},
                             {QStringLiteral("end"), fields.end},
                             {QStringLiteral("protocol"), fields.protocol},
                             {QStringLiteral("address"), fields.address}});
  }
  QFile file(file_name);
  if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(array).toJson()) < 0) {
    Fail(QStringLiteral("%1 cannot be written.").arg(file_name));
  }
}

}  // namespace

Race::Race(const QString& bench_program, const RouterRecord& router, const RaceOptions& options)
    : bench_program_(bench_program),
      options_(options),
      entries_(JobEntries(options.entries)),
      router_(InFolderOf(bench_program, "quayline-demo-router"), options.rows, options.delay_ms,
              options.verbose) {
  WriteEntries(entries_, folder_.filePath(QStringLiteral("entries.json")));
  const auto saved = SavePortList(entries_, folder_.filePath(QStringLiteral("list.qyl")));
  const auto written = WriteProgramFolder({router}, folder_.path());
  if (!saved || !written) {
    Fail(QStringLiteral("The folder %1 cannot be written.").arg(folder_.path()));
  }
  QFile password(folder_.filePath(QStringLiteral("password")));
  if (!password.open(QIODevice::WriteOnly) || password.write("admin\n") < 0) {
    Fail(QStringLiteral("The folder %1 cannot be written.").arg(folder_.path()));
  }
  password.close();
  AdoptOrphans();
  // After a failure, too, nothing is left running.
  std::atexit([] {
    for (const pid_t child : Children()) {
      kill(child, SIGTERM);
    }
  });
  Start();
}

std::vector<std::string> Race::WordsFor(const QString& name) const {
  const std::string page = "http://127.0.0.1:" + std::to_string(router_.Port()) + "/rules.html";
  if (name.startsWith(QLatin1String("playwright"))) {
    const std::string way = name.endsWith(QLatin1String("calls")) ? "calls" : "scripts";
    const std::string peer = QUAYLINE_SOURCE_DIR "/bench/peers/playwright_peer.mjs";
    const QString entries = folder_.filePath(QStringLiteral("entries.json"));
    return {"node", peer, way, page, "admin:admin", entries.toStdString()};
  }
  // "quayline +2": with the second of the flags that are tried.
  const int flag = name.section(QLatin1Char('+'), 1, 1).toInt();
  const QString flags = flag > 0 ? options_.flags.value(flag - 1)
                                 : qEnvironmentVariable("QTWEBENGINE_CHROMIUM_FLAGS");
  return {"env",
          "QTWEBENGINE_CHROMIUM_FLAGS=" + flags.toStdString(),
          bench_program_.toStdString(),
          "--contender",
          name.toStdString(),
          "--page",
          page,
          "--entries",
          std::to_string(options_.entries)};
}

void Race::Start() {
  QStringList names{QStringLiteral("http"),
                    QStringLiteral("quayline"),
                    QStringLiteral("quayline-stamp"),
                    QStringLiteral("quayline-hidden"),
                    kWholeProgram,
                    QStringLiteral("bare"),
                    QStringLiteral("bare-stamp"),
                    QStringLiteral("bare-hidden"),
                    QStringLiteral("bare-scripts"),
                    QStringLiteral("playwright-scripts"),
                    QStringLiteral("playwright-calls")};
  for (qsizetype flag = 1; flag <= options_.flags.size(); ++flag) {
    names.append(QStringLiteral("quayline +%1").arg(flag));
  }
  for (const QString& name : names) {
    const bool is_extra = name.contains(QLatin1Char('+'));
    if (!is_extra && !options_.only.isEmpty() && !options_.only.contains(name)) {
      continue;
    }
    Runner runner{.name = name, .process = nullptr};
    if (name != kWholeProgram) {
      runner.process = std::make_unique<ChildProcess>(WordsFor(name), options_.verbose);
      if (runner.process->ReadLine(kPatience) != "ready") {
        Fail(QStringLiteral("%1 does not get ready. Try --verbose.").arg(name));
      }
    }
    runners_.push_back(std::move(runner));
  }
}

ChildProcess& Race::Find(const QString& name) {
  const auto runner = std::ranges::find(runners_, name, &Runner::name);
  if (runner == runners_.end()) {
    Fail(QStringLiteral("%1 does not take part.").arg(name));
  }
  return *runner->process;
}

std::vector<Result> Race::Run() {
  std::vector<Result> results;
  results.reserve(runners_.size());
  for (const Runner& runner : runners_) {
    results.push_back({.name = runner.name});
  }
  for (int round = 0; round < options_.rounds; ++round) {
    for (size_t turn = 0; turn < runners_.size(); ++turn) {
      const size_t which = (turn + static_cast<size_t>(round)) % runners_.size();
      if (runners_[which].process) {
        Prepare(*runners_[which].process);
      }
      router_.Reset();
      RunOne(runners_[which], results[which]);
      Check(runners_[which], results[which]);
    }
  }
  return results;
}

void Race::Prepare(ChildProcess& process) const {
  process.WriteLine("prepare");
  if (process.ReadLine(kPatience) != "done") {
    Fail(QStringLiteral("A contender does not get ready for its job. Try --verbose."));
  }
}

void Race::RunOne(Runner& runner, Result& result) {
  if (!runner.process) {
    RunWholeProgram(result);
    return;
  }
  ProcessorClock processor(runner.process->Id());
  QElapsedTimer clock;
  clock.start();
  runner.process->WriteLine("job");
  if (runner.process->ReadLine(kPatience) != "done") {
    Fail(QStringLiteral("%1 does not finish. Try --verbose.").arg(runner.name));
  }
  result.wall_ms.push_back(static_cast<double>(clock.nsecsElapsed()) / kNanosecondsPerMs);
  result.processor_ms.push_back(static_cast<double>(processor.Lap().count()) / kNanosecondsPerMs);
  result.memory = MemoryOf(runner.process->Id());
}

void Race::RunWholeProgram(Result& result) {
  // The program's browser outlives it by a moment, and the other contenders' browsers leave
  // processes of their own.
  const std::vector<pid_t> others = Children();
  QElapsedTimer clock;
  clock.start();
  ChildProcess program({InFolderOf(bench_program_, "quayline-cli").toStdString(), "update",
                        "--data", folder_.path().toStdString(), "--list",
                        folder_.filePath(QStringLiteral("list.qyl")).toStdString(), "--router",
                        "Demo Router L40 (long list)", "--address", "127.0.0.1", "--port",
                        std::to_string(router_.Port()), "--user", "admin", "--password-file",
                        folder_.filePath(QStringLiteral("password")).toStdString()},
                       options_.verbose);
  const ChildProcess::End end = program.WaitForEnd();
  result.wall_ms.push_back(static_cast<double>(clock.nsecsElapsed()) / kNanosecondsPerMs);
  const std::chrono::nanoseconds processor = end.processor + ReapOrphans(others);
  result.processor_ms.push_back(static_cast<double>(processor.count()) / kNanosecondsPerMs);
  if (end.status != 0) {
    Fail(QStringLiteral("quayline-cli ends with %1.").arg(end.status));
  }
}

void Race::Check(const Runner& runner, Result& result) {
  const demo::RouterState state = router_.State();
  if (const QString missing = WhatIsMissing(entries_, state); !missing.isEmpty()) {
    Fail(QStringLiteral("%1: %2.").arg(runner.name, missing));
  }
  result.exchanges = static_cast<double>(state.requests) / options_.entries;
}

QHash<QString, double> Race::MeasureSteps(const QString& contender) {
  ChildProcess& process = Find(contender);
  Prepare(process);
  process.WriteLine("commands");
  QHash<QString, std::vector<double>> costs;
  for (;;) {
    const std::optional<std::string> line = process.ReadLine(kPatience);
    if (!line) {
      Fail(QStringLiteral("%1 does not finish its steps.").arg(contender));
    }
    if (line == "done") {
      break;
    }
    const QStringList words = QString::fromStdString(*line).split(QLatin1Char(' '));
    if (words.value(0) == QLatin1String("cost")) {
      costs[words.value(1)].push_back(words.value(2).toDouble());
    }
  }
  QHash<QString, double> medians;
  for (auto cost = costs.cbegin(); cost != costs.cend(); ++cost) {
    medians[cost.key()] = Median(cost.value());
  }
  return medians;
}

QStringList Race::Trace() {
  ChildProcess& process = Find(QStringLiteral("quayline"));
  Prepare(process);
  router_.Reset();
  process.WriteLine("trace");
  QStringList events;
  for (;;) {
    const std::optional<std::string> line = process.ReadLine(kPatience);
    if (!line) {
      Fail(QStringLiteral("The traced job does not finish."));
    }
    if (line == "done") {
      return events;
    }
    constexpr QLatin1String kEvent("event ");
    events.append(QString::fromStdString(*line).mid(kEvent.size()));
  }
}

}  // namespace quayline::bench
