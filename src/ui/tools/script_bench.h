// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

#include "core/app_context.h"
#include "script/bench_runner.h"
#include "script/picked_element.h"
#include "ui/toolkit/prompts.h"
#include "ui/toolkit/run_questions.h"

namespace Ui {
class ScriptBench;
}

namespace quayline {

// A page of the router beside a script that is being written. Lines of the script are run on it;
// an element that the user points at is described, and used by a line; the page is saved for
// whoever has no such router.
class ScriptBench final : public QWidget {
  Q_OBJECT

 public:
  // The script that is being edited, and the line of the caret, from 0.
  struct Place {
    QStringList lines;
    qsizetype line = 0;
  };

  ScriptBench(AppContext& context, Prompts& prompts, PageHostFactory make_host,
              std::function<Place()> place, QWidget* parent);
  ~ScriptBench() override;

  bool IsRunning() const { return runner_->IsRunning(); }
  // To be called while `window` closes: it deletes itself when a save under way has arrived.
  void Leave(QWidget& window);

 Q_SIGNALS:
  // The user has picked an element: lines that use it.
  void linesPicked(const QStringList& lines);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ConnectRunner();
  void Run(bool only_line);
  void ShowHost(PageHost* host);
  void ShowState();
  void SetPicking(bool picks);
  void Describe(bool is_picked);
  void ShowElement(const PickedElement& element);
  void AskForFolder();
  void StartSaving(const QString& folder);
  Task<> SavePage(QString folder);
  bool IsOnPage(const QObject* watched) const;
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  std::function<Place()> place_;
  std::unique_ptr<Ui::ScriptBench> ui_;
  RunQuestions questions_;
  std::unique_ptr<BenchRunner> runner_;
  QTimer describe_timer_;  // the page is not asked at every movement of the mouse
  QPoint pointer_;         // in the page's view
  QString folder_;         // of the page that was saved last
  Flow saving_;
};

}  // namespace quayline
