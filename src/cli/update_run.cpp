// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "cli/update_run.h"

#include <QWidget>

#include <chrono>

#include "cli/results.h"
#include "cli/terminal.h"
#include "core/text_bytes.h"

namespace quayline {

namespace {

// A page is laid out and takes the focus only in a view that is shown; on this program's platform
// it is not visible.
void ShowUnseen(PageHost* host) {
  if (QWidget* view = host->Widget()) {
    constexpr QSize kView(1024, 768);
    view->resize(kView);
    view->show();
  }
}

}  // namespace

UpdateRun::UpdateRun(AppContext& context, PageHostFactory make_host,
                     const UpdateArguments& arguments, QObject* parent)
    : QObject(parent),
      context_(context),
      questions_({.trusted_certificate = arguments.trusted_certificate,
                  .allowed_hosts = arguments.allowed_hosts,
                  .allows_script = arguments.allow_script},
                 &Report),
      runner_(context, std::move(make_host), questions_),
      as_json_(arguments.as_json),
      only_looks_(arguments.only_looks),
      is_trial_(arguments.is_trial) {
  timeout_.setSingleShot(true);
  if (arguments.timeout_seconds) {
    timeout_.setInterval(std::chrono::seconds(*arguments.timeout_seconds));
    connect(&timeout_, &QTimer::timeout, this, &UpdateRun::OnTimeout);
  }
  connect(&runner_, &JobRunner::activeHostChanged, this, &ShowUnseen);
  ConnectReports();
  ConnectEnd();
}

void UpdateRun::ConnectReports() {
  if (!as_json_) {
    connect(&runner_.Log(), &JobLog::appended, this, &WriteLog);
  }
  // In a trial they belong to the step above them.
  const auto report = [is_trial = is_trial_](const QString& line) {
    is_trial ? WriteLog(LineBreak() + QStringLiteral("    ") + OnOneLine(line))
             : Report(OnOneLine(line));
  };
  connect(&runner_, &JobRunner::statusAppended, this,
          [report](const QString& line, StatusKind kind) {
            if (kind == StatusKind::kNotable) {
              report(line);
            }
          });
  connect(&runner_, &JobRunner::errorAppended, this, report);
  connect(&runner_, &JobRunner::noticeRequested, this, &ReportLines);
  connect(&runner_, &JobRunner::waitingFor, this, &UpdateRun::ReportWait);
}

void UpdateRun::ConnectEnd() {
  connect(&runner_, &JobRunner::ended, this, [this] {
    if (!as_json_) {
      WriteLog(LineBreak());
    }
    if (TakesBack()) {
      QMetaObject::invokeMethod(this, &UpdateRun::TakeBack, Qt::QueuedConnection);
    } else {
      runner_.Leave();
    }
  });
  connect(&runner_, &JobRunner::left, this, [this] {
    const CliExit exit = WriteResults();
    Q_EMIT finished(static_cast<int>(exit_of_update_ == CliExit::kDone ? exit : exit_of_update_));
  });
}

bool UpdateRun::TakesBack() const {
  return is_trial_ && runner_.Outcome().kind == JobKind::kUpdate && !runner_.Outcome().stopped &&
         runner_.HasRemoveScript() && !runner_.Added().isEmpty();
}

void UpdateRun::TakeBack() {
  exit_of_update_ = WriteResults();
  Q_EMIT entered(static_cast<int>(exit_of_update_));
  runner_.Open();
  ShowUnseen(runner_.ActiveHost());
  runner_.TakeBack();
}

CliExit UpdateRun::WriteResults() {
  const JobOutcome& outcome = runner_.Outcome();
  CliExit exit = CliExit::kDone;
  if (outcome.stopped || outcome.entries_failed > 0) {
    exit = CliExit::kFailed;
  } else if (outcome.kind != JobKind::kTakeBack && outcome.HasWrong()) {
    exit = CliExit::kNotAsWanted;
  }
  const bool has_looked = context_.job_options.verify_after_update || only_looks_;
  if (as_json_) {
    WriteLines(ResultObjects(outcome, static_cast<int>(exit)));
  } else if (has_looked) {
    WriteLines(ResultTable(outcome));
  }
  if (const QStringList names = outcome.ToCheck(); !names.isEmpty()) {
    Report(OnOneLine(
        QStringLiteral("Please check on the router, since something went wrong meanwhile: %1.")
            .arg(names.join(QStringLiteral(", ")))));
  } else if (has_looked && outcome.HasDoubts()) {
    Report(QStringLiteral("The router's page does not show whether every entry is there."));
  }
  return exit;
}

void UpdateRun::Start() {
  if (timeout_.interval() > 0) {
    timeout_.start();
  }
  runner_.Open();
  ShowUnseen(runner_.ActiveHost());
  if (only_looks_) {
    runner_.Check();
  } else {
    runner_.Run();
  }
}

void UpdateRun::Stop() {
  is_stopping_ = true;
  last_wait_.clear();
  context_.job_flags.ends_by_signal = true;
  Report(
      QStringLiteral("Stopping. What is on its way to the router is waited for; the same signal "
                     "once more ends the program at once."));
  runner_.Stop();
}

void UpdateRun::OnTimeout() {
  if (!is_stopping_) {
    Report(QStringLiteral("The job took longer than the %1 seconds of --timeout.")
               .arg(timeout_.interval() / 1000));
    runner_.Stop();
  }
}

// One wait is reported once, however often it is interrupted.
void UpdateRun::ReportWait(const QString& what) {
  if (!what.isEmpty() && what != last_wait_) {
    last_wait_ = what;
    Report(context_.translator.Text(kRunnerTexts.waiting_for).arg(OnOneLine(what)));
  }
}

}  // namespace quayline
