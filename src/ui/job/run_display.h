// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "script/script_runner.h"
#include "ui/toolkit/controls.h"
#include "ui/toolkit/prompts.h"
#include "ui/toolkit/run_questions.h"
#include "ui/toolkit/stop_question.h"

class QFrame;
class QLabel;
class QPlainTextEdit;
class QProgressBar;

namespace quayline {

// The controls that every window with a run has.
struct RunControls {
  // From the form of such a window.
  template <typename Form>
  explicit RunControls(const Form& form)
      : log(form.log_edit),
        states(form.status_edit),
        errors(form.errors_edit),
        browser_area(form.browser_area),
        progress(form.progress_bar),
        bar(form.busy_bar),
        proceed(form.proceed_button),
        waiting(form.waiting_label),
        stop(form.stop_button),
        rest(form.log_edit) {}

  QPlainTextEdit* log;
  QPlainTextEdit* states;
  QPlainTextEdit* errors;
  QFrame* browser_area;
  QProgressBar* progress;
  AnimationBar* bar;
  QPushButton* proceed;
  QLabel* waiting;
  QPushButton* stop;
  QWidget* rest;  // has the focus when the buttons are disabled
};

// Shows in a window's controls what its run reports. The window owns it and everything that it is
// given.
class RunDisplay final : public QObject {
  Q_OBJECT

 public:
  RunDisplay(QWidget& window, ScriptRunner& runner, RunQuestions& questions,
             const AppContext& context, Prompts& prompts, const RunnerTexts& texts,
             const RunControls& controls);

  // To be called once the runner has its browsers.
  void ShowOpened();
  // The run is over or ends: nothing is left to stop or to step.
  void DisableStop();
  // Closes the window if the user agrees that this ends the run.
  void AskToClose(const Message& title, const Message& question);
  // To be called while the window closes: it is hidden at once, and deletes itself when a save
  // under way has arrived.
  void Leave();

 private:
  void ConnectLog();
  void ConnectProgress();
  void ConnectProceed();
  void EnableProceed(bool enabled);
  void ShowHost(PageHost* host);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  QWidget& window_;
  ScriptRunner& runner_;
  RunQuestions& questions_;
  const AppContext& context_;
  Prompts& prompts_;
  const RunnerTexts& texts_;
  const RunControls controls_;
  StopQuestion stop_question_;
  bool is_stepping_ = false;  // the user works with the button, which is disabled for a moment
};

}  // namespace quayline
