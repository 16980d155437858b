// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

#include "async/flow.h"
#include "i18n/sentence.h"

namespace quayline {

// What a step of a repair did.
struct RepairResult {
  bool is_good = true;
  QList<Sentence> words = {};  // for the user; may be empty
};

struct RepairStep {
  Sentence line;  // what the user sees of it
  std::function<Task<RepairResult>()> run;
};

// Each command line as a step, which lasts three seconds at most.
QList<RepairStep> CommandSteps(const QStringList& lines);

// Does steps one after the other. None of them ends it early.
class RepairRun final : public QObject {
  Q_OBJECT

 public:
  RepairRun() = default;
  ~RepairRun() override { flow_.Cancel(); }

  // Ends a run that still goes on, after its step.
  void Start(QList<RepairStep> steps) { flow_.Start(Run(std::move(steps))); }
  void Cancel() { flow_.Cancel(); }
  bool IsRunning() const { return flow_.IsRunning(); }

 Q_SIGNALS:
  void stepStarted(int step);  // from 0
  void stepEnded(int step, const quayline::RepairResult& result);
  void ended(int failed);

 private:
  Task<> Run(QList<RepairStep> steps);

  Flow flow_;
};

}  // namespace quayline
