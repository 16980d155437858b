// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>

#include "async/task.h"
#include "core/databases.h"

namespace quayline {

// The box in which the user searches for a program of the database, by its list or by typing parts
// of its name in any order. A text that is no program's name selects none.
class ProgramBox final : public QObject {
  Q_OBJECT

 public:
  // `box` owns it.
  ProgramBox(QComboBox& box, const Databases& databases);

  bool IsEmpty() const { return programs_.isEmpty(); }
  // Fills the list again, in steps between which the window stays responsive; there may be
  // thousands of programs.
  Task<> Load();
  // Empties the box, without a signal.
  void ClearChoice();

 Q_SIGNALS:
  void progress(int loaded, int total);
  void chosen(const quayline::AppPortRecord& program);
  void choiceCleared();

 private:
  void Choose(int index);
  void Settle();

  QComboBox& box_;
  const Databases& databases_;
  QList<AppPortRecord> programs_;  // in the order of the list
  int chosen_ = -1;
};

}  // namespace quayline
