// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <expected>
#include <memory>

#include "cli/arguments.h"
#include "cli/cli_questions.h"
#include "core/app_context.h"
#include "script/job_runner.h"

namespace quayline {

// The exit statuses of the program.
enum class CliExit { kDone = 0, kRefused = 1, kUsage = 2, kFailed = 3 };

// One sentence for standard error, and the status that goes with it.
struct CliError {
  CliExit exit;
  QString message;
};

// Fills the context for a job from the arguments, the folder's settings and the router's row, loads
// the list and checks it as the main window would. Reads the password where it is told to.
std::expected<void, CliError> PrepareUpdate(const UpdateArguments& arguments, AppContext& context);

// Runs the prepared job. The log goes to standard output as it grows, browser errors and notices to
// standard error.
class UpdateRun final : public QObject {
  Q_OBJECT

 public:
  UpdateRun(AppContext& context, PageHostFactory make_host, CliAnswers answers,
            QObject* parent = nullptr);

  void Start();
  void Stop() { runner_.Stop(); }

 Q_SIGNALS:
  void finished(int exit_status);

 private:
  CliQuestions questions_;
  JobRunner runner_;
};

}  // namespace quayline
