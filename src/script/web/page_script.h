// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

#include "script/page_host.h"
#include "script/web/script_calls.h"

namespace quayline {

// Runs scripts of ours in the page's own world, and separates their errors from those of the page.
// `var` and functions of a script become the page's, as they do in a script of the page; `let`,
// `const` and `class` end with the script. `calls` outlives it.
class PageScripts final : public QObject {
  Q_OBJECT

 public:
  PageScripts(ScriptCalls& calls, QObject* parent) : QObject(parent), calls_(calls) {}

  // Answers what the script failed with, or an empty text.
  void Run(const PageScript& script, std::function<void(const QString& error)> done);
  // The page's console reported an error. While a script runs it may be the script's own.
  void NoteError(const QString& description, const QString& url, int line);

 Q_SIGNALS:
  // A script of the page failed, or one of ours, which answers the error as well.
  void failed(const QString& description, const QString& url, int line, bool is_answered);

 private:
  struct Error {
    QString description;
    QString url;
    int line = 0;
  };

  // A script has ended. Reports the errors meanwhile, and returns the script's own: `error`, or,
  // where the text was no JavaScript, what the console says.
  QString ReportErrors(const std::optional<QString>& error);

  ScriptCalls& calls_;
  QList<Error> errors_;  // while scripts run
  int running_ = 0;
};

}  // namespace quayline
