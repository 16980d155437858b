// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

#include <memory>

#include "async/task.h"
#include "core/app_context.h"
#include "script/page_questions.h"
#include "script/runner_texts.h"

namespace quayline {

// What a run waits for before its first line: runs of this program that still save, the user's
// permission for a script of somebody else, and other programs that work on the router. A stop of
// the job ends each of these waits. Belongs to the runner, and holds the lock of its router.
class RunAdmission final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  RunAdmission(AppContext& context, PageQuestions& questions, const RunnerTexts& texts);

  // A router serves one run at a time, and the run before may still have a save under way.
  Task<> AwaitOtherRuns(QString router_host);
  // Whether the scripts of this router may run: the user is asked about those of somebody else that
  // he has not allowed before.
  Task<bool> AskPermission(int router_id);
  // Waits until no other program works on the router.
  Task<> LockRouter(RouterSession router);
  void Unlock() { lock_.reset(); }
  // The script was written by somebody who did not sign it: it may lead to the router only.
  bool IsConfined() const { return is_confined_; }

 Q_SIGNALS:
  // What the run waits for; empty when it goes on.
  void waitingFor(const QString& what);

 private:
  Task<bool> AskUser(ForeignScript script);

  AppContext& context_;
  PageQuestions& questions_;
  const RunnerTexts& texts_;
  std::shared_ptr<const RouterLock> lock_;
  bool is_confined_ = false;
};

}  // namespace quayline
