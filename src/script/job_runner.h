// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "script/script_runner.h"

namespace quayline {

struct JobOutcome {
  int entries = 0;         // passes that were begun
  int entries_failed = 0;  // passes that ended in an error block
  bool stopped = false;    // ended before the last row
  // Names of entries that ran, while a script or another part of a page failed.
  QStringList to_check;
};

// A job: one pass of the router's update script for each row of the port list, in a browser that it
// owns. It is the logic of the job window and of the command line.
//
// The rows are those that stand in the list when the job begins; what the user changes there later
// belongs to the next job. The login, the options and the address are read when their turn comes.
//
// Open() makes the browser, writes the head of the log and forgets how the job before it ended: its
// stop, its errors, its forgiven error. Run() begins the passes. Stop() ends the
// job at whatever it waits for. Destroying the runner ends everything at once.
class JobRunner final : public ScriptRunner {
  Q_OBJECT

 public:
  JobRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
            QObject* parent = nullptr);
  ~JobRunner() override;

  void Open();
  void Run();

  const JobOutcome& Outcome() const { return outcome_; }

 Q_SIGNALS:
  // Row `row` (from 1) of `rows` begins.
  void entryStarted(int row, int rows, const QString& app_name);

 protected:
  void CountError() override;

 private:
  Task<> RunRows();
  RunArguments ArgumentsOf(int row, const QString& former_computer_name) const;
  void LogRowHead(int row);

  QList<PortEntry> rows_;
  JobOutcome outcome_;
};

}  // namespace quayline
