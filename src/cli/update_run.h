// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include "cli/arguments.h"
#include "cli/cli_questions.h"
#include "cli/prepare_update.h"
#include "core/app_context.h"
#include "script/job_runner.h"

namespace quayline {

// Runs the prepared job. The log goes to standard output as it grows; what a window shows beside
// the log goes to standard error: errors, notices, messages of pages, what is refused and what is
// waited for.
// What became of the entries follows the log, or comes instead of it.
class UpdateRun final : public QObject {
  Q_OBJECT

 public:
  UpdateRun(AppContext& context, PageHostFactory make_host, const UpdateArguments& arguments,
            QObject* parent = nullptr);

  void Start();
  // Of a trial: the update that has ended is followed by the removal of what it entered.
  bool TakesBack() const;
  const JobOutcome& Outcome() const { return runner_.Outcome(); }
  // For a signal: ends the job where it is. A save that is on its way to the router is waited for,
  // as long as it takes.
  void Stop();

 Q_SIGNALS:
  // Of a trial, before the entries are removed again.
  void entered(int exit_status);
  void finished(int exit_status);

 private:
  void ConnectReports();
  void ConnectEnd();
  void TakeBack();
  CliExit WriteResults();
  void OnTimeout();
  void ReportWait(const QString& what);

  AppContext& context_;
  CliQuestions questions_;
  JobRunner runner_;
  const bool as_json_;
  const bool only_looks_;
  const bool is_trial_;
  CliExit exit_of_update_ = CliExit::kDone;  // of a trial
  QTimer timeout_;
  QString last_wait_;
  bool is_stopping_ = false;
};

}  // namespace quayline
