// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <string>
#include <vector>

#include "bench/job/child_process.h"
#include "bench/job/process_tree.h"
#include "bench/job/router_process.h"
#include "core/port_entry.h"
#include "core/records.h"

namespace quayline::bench {

struct RaceOptions {
  int rows = 40;
  int delay_ms = 0;
  int entries = 20;
  int rounds = 5;
  bool verbose = false;
  QStringList only;   // names of contenders; empty: all
  QStringList flags;  // of the web engine: Quayline's engine runs once more with each
};

// What one contender took.
struct Result {
  QString name;
  std::vector<double> wall_ms;
  std::vector<double> processor_ms;
  double exchanges = 0;  // with the router, an entry
  TreeMemory memory;     // after the last job
};

// A contender that is started and ready for commands.
struct Runner {
  QString name;
  std::unique_ptr<ChildProcess> process;  // none for a program that is started for each job
};

// Lets all contenders do the same job on the same router, in turn and in each round in another
// order, and checks the router's table after each job.
class Race final {
 public:
  Race(const QString& bench_program, const RouterRecord& router, const RaceOptions& options);

  // Ends the program with a sentence when a contender fails or leaves a rule out.
  std::vector<Result> Run();
  // The median cost in microseconds of each single step that a contender reports.
  QHash<QString, double> MeasureSteps(const QString& contender);
  // The events of one job of Quayline's.
  QStringList Trace();

 private:
  std::vector<std::string> WordsFor(const QString& name) const;
  void Start();
  ChildProcess& Find(const QString& name);
  void Prepare(ChildProcess& process) const;
  void RunOne(Runner& runner, Result& result);
  void RunWholeProgram(Result& result);
  void Check(const Runner& runner, Result& result);

  QString bench_program_;
  RaceOptions options_;
  QList<PortEntry> entries_;
  QTemporaryDir folder_;
  RouterProcess router_;
  std::vector<Runner> runners_;
};

}  // namespace quayline::bench
