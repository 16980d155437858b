// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

#include "async/flow.h"
#include "async/task.h"
#include "core/app_context.h"
#include "script/browser_set.h"
#include "script/job_log.h"
#include "script/page_host.h"
#include "script/run_environment.h"
#include "script/script_run.h"

namespace quayline {

struct JobOutcome {
  int entries = 0;         // passes that were begun
  int entries_failed = 0;  // passes that ended in an error block
  bool stopped = false;    // ended before the last row
};

// A job: one pass of the router's update script for each row of the port list, in a browser that it
// owns. It is the logic of the job window and of the command line; it never touches a widget.
//
// The rows are those that stand in the list when the job begins; what the user changes there later
// belongs to the next job. The login, the options and the address are read when their turn comes.
//
// Open() makes the browser, writes the head of the log and forgets how the job before it ended: its
// stop, its errors, its forgiven error. Run() begins the passes. Stop() ends the
// job at whatever it waits for. Destroying the runner ends everything at once.
class JobRunner final : public QObject {
  Q_OBJECT

 public:
  JobRunner(AppContext& context, PageHostFactory make_host, QObject* parent = nullptr);
  ~JobRunner() override;

  void Open();
  void Run();
  void Stop();
  // The debug button: lets the run go on behind the line at which it holds, and frees it from a
  // page load that never ends.
  void ProceedToNextCommand();

  bool IsRunning() const { return running_; }
  const JobOutcome& Outcome() const { return outcome_; }

  JobLog& Log() { return log_; }
  // The browser on show: that of the page, or of its latest popup. Valid from Open() on.
  PageHost* ActiveHost() const;

 Q_SIGNALS:
  // A line for the box of browser states, and one for that of browser errors. Without line breaks.
  void statusAppended(const QString& line);
  void errorAppended(const QString& line);
  // The list of errors starts again.
  void errorsCleared();
  // Another browser is on show: a popup opened or closed. The one before may be gone.
  void activeHostChanged(quayline::PageHost* host);
  void progressChanged(int percent);
  // Whether the moving bar moves.
  void busyChanged(bool busy);
  // Row `row` (from 1) of `rows` begins.
  void entryStarted(int row, int rows, const QString& app_name);
  // The run holds behind a line and waits for ProceedToNextCommand().
  void proceedEnabled(bool enabled);
  // What the run waits for, when a wait gets long; empty when it goes on.
  void waitingFor(const QString& what);
  // A message for the user, to be shown without stopping the job.
  void noticeRequested(const QString& text);
  // Questions of the router that the user has to answer while the page waits; see PageHost. Where
  // nobody hears them they are refused.
  void certificateQuestion(const QString& address, const QString& fingerprint,
                           const std::function<void(bool trusted)>& answer);
  void loginQuestion(const QString& address,
                     const std::function<void(std::optional<quayline::TypedLogin>)>& answer);
  // The job is over, finished or stopped.
  void ended();

 private:
  Task<> RunRows();
  RunArguments ArgumentsOf(int row, const QString& computer_name) const;
  void LogRowHead(int row);
  void GiveLogin();
  void ConnectHost(PageHost* host);
  void ShowPageMessage(const QString& text);
  void OnNavigateError(const QString& url, int status);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  PageHostFactory make_host_;
  JobLog log_;
  std::unique_ptr<BrowserSet> browsers_;
  std::unique_ptr<RunEnvironment> environment_;
  QList<PortEntry> rows_;
  JobOutcome outcome_;
  bool stopped_by_user_ = false;
  int messages_shown_ = 0;
  bool running_ = false;
  Flow flow_;  // last: its frames use what stands above
};

}  // namespace quayline
