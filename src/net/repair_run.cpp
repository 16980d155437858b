// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/repair_run.h"

#include "async/wait.h"
#include "platform/command_runner.h"

namespace quayline {

namespace {

constexpr Message kCommandLine{"%1"};
constexpr Message kNotStarted{"Error: CreateProcess failed. %1", "%1 is a number"};

Task<RepairResult> RunLine(QString line, const Translator& translator) {
  const std::optional<int> error = co_await RunCommand(std::move(line));
  co_return RepairResult{.is_good = !error,
                         .words = error ? translator.Text(kNotStarted).arg(*error) : QString()};
}

}  // namespace

QList<RepairStep> CommandSteps(const QStringList& lines, const Translator& translator) {
  QList<RepairStep> steps;
  for (const QString& line : lines) {
    steps.append({.line = {kCommandLine, {line}},
                  .run = [line, &translator] { return RunLine(line, translator); }});
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
