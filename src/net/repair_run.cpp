// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/repair_run.h"

#include "async/wait.h"
#include "platform/command_runner.h"

namespace quayline {

namespace {

constexpr Message kNotStarted{"Error: CreateProcess failed. %1", "%1 is a number"};

Task<RepairResult> RunLine(QString line) {
  const std::optional<int> error = co_await RunCommand(std::move(line));
  RepairResult result{.is_good = !error};
  if (error) {
    result.words.append({kNotStarted, {QString::number(*error)}});
  }
  co_return result;
}

}  // namespace

QList<RepairStep> CommandSteps(const QStringList& lines) {
  QList<RepairStep> steps;
  for (const QString& line : lines) {
    steps.append({.line = AsItIs(line), .run = [line] { return RunLine(line); }});
  }
  return steps;
}

Task<> RepairRun::Run(QList<RepairStep> steps) {
  int failed = 0;
  for (int step = 0; step < steps.size(); ++step) {
    Q_EMIT stepStarted(step);
    co_await Sleep(std::chrono::milliseconds(0));  // the window shows the line first
    const RepairResult result = co_await steps[step].run();
    failed += result.is_good ? 0 : 1;
    Q_EMIT stepEnded(step, result);
  }
  Q_EMIT ended(failed);
}

}  // namespace quayline
