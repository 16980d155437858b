// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

#include "async/flow.h"
#include "async/task.h"
#include "core/app_context.h"
#include "script/browser_set.h"
#include "script/job_log.h"
#include "script/page_host.h"
#include "script/page_reports.h"
#include "script/page_wait.h"
#include "script/run_admission.h"
#include "script/run_environment.h"
#include "script/runner_texts.h"
#include "script/script_run.h"
#include "script/unfinished_pages.h"

namespace quayline {

// What every window that runs a script has in common: its browsers, its log, what its pages report,
// and the flags through which the window holds, frees and stops the run. It never touches a widget.
//
// Only one runner may run at a time: the flags are those of the whole program.
//
// What its pages ask goes through it to the answerer of its window. Dialogs of a page are answered
// with OK while a script command may work on the page. Before and after the run, and in a debug
// pause between two lines, the user answers them.
class ScriptRunner : public QObject, public PageQuestions {
  Q_OBJECT

 public:
  ~ScriptRunner() override;

  void Stop();
  // Ends the run at once, without ended(), and waits for saves that are on their way to the router.
  // left() follows at once where there can be no save, within WaitLimits::work_after_stop where
  // none is under way, and else within WaitLimits::after_stop.
  void Leave();
  // The debug button: continues the run after the line at which it pauses, and ends its wait for a
  // page load that never ends.
  void ProceedToNextCommand();
  // From now on the user acts on the pages himself: what they send may be a save.
  void HandOver();

  bool IsRunning() const { return running_; }
  // Stop() was called; errors of pages can end a run as well.
  bool StoppedByUser() const { return stopped_by_user_; }
  JobLog& Log() { return log_; }
  // The browser on show: that of the page, or of its latest popup. Valid once it is opened.
  PageHost* ActiveHost() const;

 Q_SIGNALS:
  // A line for the box of browser states, and one for that of browser errors.
  void statusAppended(const QString& line, quayline::StatusKind kind);
  void errorAppended(const QString& line);
  // The list of errors starts again.
  void errorsCleared();
  // Another browser is on show: a popup opened or closed. The one before may be gone.
  void activeHostChanged(quayline::PageHost* host);
  void progressChanged(int percent);
  // Line `step` (from 1) of the `steps` of the script begins.
  void stepStarted(int step, int steps);
  // Whether the moving bar moves.
  void busyChanged(bool busy);
  // The run pauses after a line and waits for ProceedToNextCommand().
  void proceedEnabled(bool enabled);
  // What the run waits for, when a wait gets long; empty when it goes on.
  void waitingFor(const QString& what);
  // A message for the user, to be shown without stopping the run.
  void noticeRequested(const QString& text);
  // The run is over, finished or stopped.
  void ended();
  // Nothing is lost any more when the runner goes.
  void left();

 protected:
  // `questions` answers what the pages ask, and outlives the runner. `active_index` is where the
  // number of the browser on show is kept.
  ScriptRunner(AppContext& context, PageHostFactory make_host, PageQuestions& questions,
               const RunnerTexts& texts, int& active_index, QObject* parent);

  // Makes the browser, and forgets how the run before ended: its stop, its errors, its log. Pages
  // of that run that may still save are kept until they have, and the next run waits for them. Each
  // line of a script drives the browser that `driven` names.
  void OpenBrowsers(std::function<PageHost*(const BrowserSet&)> driven);
  // Gives the flags back until StartRun(). OpenBrowsers() has taken them: no other run may begin in
  // between.
  void LetFlagsGo();
  // Runs `run`; ended() follows.
  void StartRun(Task<> run);
  // Ends the run where it stands, without ended(). For destructors: a run uses the whole object.
  void CancelRun() { flow_.Cancel(); }

  // The router on which the run works: the one that is chosen in the main window.
  virtual const RouterSession& Router() const { return context_.session; }
  // Where that router is and how to log in there. The entry is empty.
  RunArguments RouterArguments() const;
  void GiveLogin();

  // A navigation failed during the run: decides what that costs beside the page's error.
  virtual void CountError() = 0;

  // The run works on a page.
  virtual void NoteAction() {}

  // Whether what pages report belongs in the log.
  virtual bool LogsPages() const { return running_; }

  // How many scripts and other parts of pages have failed during the run.
  int PageFaults() const { return reports_.Faults(); }
  // What pages said in dialogs that were answered for the user, since ForgetPageWords().
  const QStringList& PageWords() const { return reports_.Words(); }
  void ForgetPageWords() { reports_.ForgetWords(); }

  BrowserSet& Browsers() { return *browsers_; }
  PageWait& Pages() { return *pages_; }
  RunEnvironment& Environment() { return *environment_; }
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  JobLog log_;

 private:
  // Whether the program's flags are those of this run. Other windows may run meanwhile, when this
  // one's run is over.
  bool HoldsFlags() const;
  void KeepUntilSaved();
  Task<> LeavePages();
  Task<> RunWhenFree(Task<> run);
  // Releases the router once no page of the run is under way any more.
  void UnlockWhenIdle();
  void EndRun();
  void ConnectHost(PageHost* host);
  void AskForeignScript(const ForeignScript& script,
                        std::function<void(bool allowed)> answer) override;
  void AskCertificate(const ShownCertificate& shown,
                      std::function<void(bool trusted)> answer) override;
  void AskLogin(const QString& address,
                std::function<void(std::optional<TypedLogin>)> answer) override;
  void AskOtherAddress(const OtherAddress& other,
                       std::function<void(bool allowed)> answer) override;
  std::optional<PageDialogAnswer> AnswerDialog(const PageDialog& dialog) override;
  void OnNavigateError(const QString& url, int status);

  PageHostFactory make_host_;
  PageQuestions& questions_;
  int& active_index_;
  std::unique_ptr<BrowserSet> browsers_;
  std::unique_ptr<PageWait> pages_;
  std::unique_ptr<RunEnvironment> environment_;
  bool stopped_by_user_ = false;
  bool running_ = false;
  bool has_run_ = false;
  bool left_during_run_ = false;
  RunAdmission admission_;
  PageReports reports_;
  // These last: their frames use what is above.
  UnfinishedPages unfinished_;
  Flow leaving_;
  Flow flow_;
};

}  // namespace quayline
