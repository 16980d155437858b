// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/run_display.h"

#include <QFrame>
#include <QLabel>
#include <QLayout>
#include <QPlainTextEdit>
#include <QProgressBar>

#include "ui/toolkit/theme.h"

namespace quayline {

namespace {

// Adds to the end and keeps the end in view; a long log is never laid out again.
void AppendAtEnd(QPlainTextEdit& box, const QString& text) {
  QTextCursor cursor(box.document());
  cursor.movePosition(QTextCursor::End);
  cursor.insertText(text);
  box.setTextCursor(cursor);
  box.ensureCursorVisible();
}

// A new line, with the caret at its start.
void AppendLine(QPlainTextEdit& box, const QString& line) {
  AppendAtEnd(box, QLatin1Char('\n') + line);
  box.moveCursor(QTextCursor::StartOfBlock);
}

}  // namespace

RunDisplay::RunDisplay(QWidget& window, ScriptRunner& runner, RunQuestions& questions,
                       const AppContext& context, Prompts& prompts, const RunnerTexts& texts,
                       const RunControls& controls)
    : QObject(&window),
      window_(window),
      runner_(runner),
      questions_(questions),
      context_(context),
      prompts_(prompts),
      texts_(texts),
      controls_(controls),
      stop_question_(context.job_flags, prompts, window) {
  controls_.waiting->setForegroundRole(QPalette::PlaceholderText);
  controls_.proceed->setIcon(ThemeIcon(QStringLiteral("step")));
  controls_.stop->setIcon(ThemeIcon(QStringLiteral("stop")));
  for (QPlainTextEdit* box : {controls_.log, controls_.states, controls_.errors}) {
    box->viewport()->setBackgroundRole(QPalette::Window);  // nothing can be typed here
  }
  controls_.states->setPlainText(Text(texts_.first_status) + QLatin1Char('\n'));
  ConnectLog();
  ConnectProgress();
  ConnectProceed();
}

void RunDisplay::ShowOpened() {
  ShowHost(runner_.ActiveHost());
  controls_.proceed->setVisible(context_.job_options.debug_mode);
}

void RunDisplay::Leave() {
  questions_.RefuseAll();
  runner_.disconnect(this);
  window_.setAttribute(Qt::WA_DeleteOnClose, false);
  connect(&runner_, &ScriptRunner::left, &window_, &QObject::deleteLater);
  runner_.Leave();
}

void RunDisplay::ConnectLog() {
  connect(&runner_.Log(), &JobLog::appended, this,
          [this](const QString& text) { AppendAtEnd(*controls_.log, text); });
  connect(&runner_, &ScriptRunner::statusAppended, this,
          [this](const QString& line) { AppendLine(*controls_.states, line); });
  connect(&runner_, &ScriptRunner::errorAppended, this,
          [this](const QString& line) { AppendLine(*controls_.errors, line); });
  connect(&runner_, &ScriptRunner::errorsCleared, this,
          [this] { controls_.errors->setPlainText(Text(texts_.last_error)); });
  connect(&runner_, &ScriptRunner::noticeRequested, this,
          [this](const QString& text) { prompts_.Notify(&window_, text); });
}

void RunDisplay::ConnectProgress() {
  connect(&runner_, &ScriptRunner::activeHostChanged, this, &RunDisplay::ShowHost);
  connect(&runner_, &ScriptRunner::progressChanged, controls_.progress, &QProgressBar::setValue);
  connect(&runner_, &ScriptRunner::busyChanged, controls_.bar, &AnimationBar::SetMoving);
  connect(&runner_, &ScriptRunner::waitingFor, this, [this](const QString& what) {
    controls_.waiting->setText(what.isEmpty() ? QString() : Text(texts_.waiting_for).arg(what));
  });
  connect(&runner_, &ScriptRunner::ended, this, [this] {
    controls_.waiting->clear();
    runner_.HandOver();
  });
}

// Debug mode may be switched on during a run, which then pauses: the button to continue is shown.
void RunDisplay::ConnectProceed() {
  connect(&runner_, &ScriptRunner::proceedEnabled, this, [this](bool enabled) {
    if (enabled) {
      runner_.HandOver();
    }
    controls_.proceed->setVisible(enabled || controls_.proceed->isVisible());
    EnableProceed(enabled);
  });
  connect(controls_.proceed, &QPushButton::clicked, &runner_, &ScriptRunner::ProceedToNextCommand);
}

// A disabled button passes its focus to the next one, which is "Stop": another control
// keeps it meanwhile.
void RunDisplay::EnableProceed(bool enabled) {
  if (!enabled && window_.focusWidget() == controls_.proceed) {
    is_stepping_ = true;
    controls_.rest->setFocus();
  }
  controls_.proceed->setEnabled(enabled);
  if (enabled && is_stepping_) {
    is_stepping_ = false;
    if (window_.focusWidget() == controls_.rest) {
      controls_.proceed->setFocus();
    }
  }
}

void RunDisplay::DisableStop() {
  EnableProceed(false);
  is_stepping_ = false;
  if (window_.focusWidget() == controls_.stop) {
    controls_.rest->setFocus();
  }
  controls_.stop->setEnabled(false);
}

void RunDisplay::AskToClose(const Message& title, const Message& question) {
  stop_question_.Ask(Text(title), Text(question), [this] { window_.close(); });
}

void RunDisplay::ShowHost(PageHost* host) {
  QWidget* shown = host ? host->Widget() : nullptr;
  QLayout* area = controls_.browser_area->layout();
  for (int i = 0; i < area->count(); ++i) {
    if (QWidget* other = area->itemAt(i)->widget()) {
      other->setVisible(other == shown);
    }
  }
  if (shown && area->indexOf(shown) < 0) {
    area->addWidget(shown);
    shown->show();
  }
}

}  // namespace quayline
