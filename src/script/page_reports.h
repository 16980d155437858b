// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

#include "core/app_context.h"
#include "script/job_log.h"
#include "script/page_host.h"
#include "script/runner_texts.h"
#include "script/status_text.h"

namespace quayline {

// What the pages of a run report, in the words for the user: lines for the boxes of states and of
// errors, notices, lines of the log. A page that reports for ever is shown a few times. Belongs to
// the runner.
class PageReports final : public QObject {
  Q_OBJECT

 public:
  // `is_logged`: whether what pages report belongs in the log at the moment. What is referred to
  // outlives it.
  PageReports(AppContext& context, JobLog& log, const RunnerTexts& texts,
              std::function<bool()> is_logged);

  void Follow(PageHost* host);
  // Another run begins.
  void Forget();

  // A page could not be opened: adds the line to the box of errors, and returns what it says.
  QString NoteError(const QString& url, int status);
  // What the user should check because of that, once for each cause.
  void Advise(int status);

  // How many scripts and other parts of pages have failed during the run.
  int Faults() const { return faults_; }
  // What pages said in dialogs that were answered for the user, since ForgetWords(). The first few.
  const QStringList& Words() const { return words_; }
  void NoteWords(const QString& text);
  void ForgetWords() { words_.clear(); }

 Q_SIGNALS:
  // As those of ScriptRunner.
  void statusAppended(const QString& line, quayline::StatusKind kind);
  void errorAppended(const QString& line);
  void noticeRequested(const QString& text);

 private:
  void ShowStatus(const QString& text, StatusKind kind);
  void ShowMessage(const QString& text);
  void NoteFault(const Message& fault, const QString& detail);
  QString Notice(const Message& what, std::initializer_list<Message> steps) const;
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  JobLog& log_;
  const RunnerTexts& texts_;
  std::function<bool()> is_logged_;
  int messages_shown_ = 0;
  QList<StatusNotice> notices_shown_;
  int faults_ = 0;
  QStringList words_;
};

}  // namespace quayline
