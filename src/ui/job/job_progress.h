// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "i18n/translator.h"
#include "script/job_runner.h"
#include "ui/job/entry_states.h"

namespace Ui {
class JobWindow;
}

namespace quayline {

// Shows in the job window how far the job is: the headline and the title, the bars, and the entry
// whose turn it is. Belongs to the window.
class JobProgress final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it. `title` is the window's, in English.
  JobProgress(const Ui::JobWindow& ui, const JobRunner& runner, EntryStates& states,
              const Translator& translator, const Message& title, QWidget& window);

  // Nothing is known yet but that the router's rules are being read.
  void ShowLook();
  void ShowEnd();
  // The window's title, without the number of an entry.
  void ShowTitle();

 private:
  void ShowEntry(int row, int rows, const QString& app_name);
  void ShowStep(int step, int steps);
  // Whether the progress can be counted now.
  void SetCounted(bool counted);
  QString Text(const Message& message) const { return translator_.Text(message); }

  const Ui::JobWindow& ui_;
  const JobRunner& runner_;
  EntryStates& states_;
  const Translator& translator_;
  const Message title_;
  QWidget& window_;
  int row_ = 0;  // whose turn it is, from 1
  int rows_ = 0;
};

}  // namespace quayline
