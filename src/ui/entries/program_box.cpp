// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/program_box.h"

#include <QCompleter>
#include <QLineEdit>
#include <QSortFilterProxyModel>

#include <algorithm>
#include <limits>

#include "async/wait.h"
#include "ui/toolkit/controls.h"

namespace quayline {

namespace {

constexpr int kProgramsAStep = 500;  // a step takes much less than an animation frame

// The names that contain each word that was typed, in any order.
class NamesWithWords final : public QSortFilterProxyModel {
 public:
  using QSortFilterProxyModel::QSortFilterProxyModel;

  void SetWords(const QString& typed) {
    words_ = typed.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    invalidateFilter();
  }

 protected:
  bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    const QString name = sourceModel()->index(row, 0, parent).data().toString();
    return std::ranges::all_of(
        words_, [&](const QString& word) { return name.contains(word, Qt::CaseInsensitive); });
  }

 private:
  QStringList words_;
};

}  // namespace

ProgramBox::ProgramBox(QComboBox& box, const Databases& databases)
    : QObject(&box), box_(box), databases_(databases) {
  auto* names = new NamesWithWords(&box);
  names->setSourceModel(box.model());
  auto* completer = new QCompleter(names, &box);
  completer->setCompletionMode(QCompleter::UnfilteredPopupCompletion);  // `names` is the filter
  box.setCompleter(completer);
  connect(box.lineEdit(), &QLineEdit::textEdited, names, &NamesWithWords::SetWords);
  IgnoreWheel(&box);
  connect(&box, &QComboBox::activated, this, &ProgramBox::Choose);
  connect(box.lineEdit(), &QLineEdit::editingFinished, this, &ProgramBox::Settle);
}

Task<> ProgramBox::Load() {
  box_.clear();
  programs_.clear();
  chosen_ = -1;
  const int total = databases_.AppPortCount();
  int last_id = std::numeric_limits<int>::min();
  while (true) {
    const QList<AppPortRecord> step = databases_.AppPorts(last_id, kProgramsAStep);
    if (step.isEmpty()) {
      break;
    }
    last_id = step.last().id;
    for (const AppPortRecord& program : step) {
      box_.addItem(program.appname, program.id);
    }
    box_.setCurrentIndex(-1);  // the first item of an empty box is selected automatically
    programs_ += step;
    Q_EMIT progress(static_cast<int>(programs_.size()), total);
    co_await Sleep(std::chrono::milliseconds(0));
  }
}

void ProgramBox::ClearChoice() {
  chosen_ = -1;
  box_.setCurrentIndex(-1);
  box_.clearEditText();
}

void ProgramBox::Choose(int index) {
  if (index < 0 || index >= programs_.size()) {
    return;
  }
  chosen_ = index;
  box_.lineEdit()->setCursorPosition(0);  // the beginning of a long name is shown
  Q_EMIT chosen(programs_.at(index));
}

// What was typed stays, whether it is a program or not.
void ProgramBox::Settle() {
  const QString typed = box_.currentText();
  if (chosen_ >= 0 && typed == programs_.at(chosen_).appname) {
    return;
  }
  const int found = typed.isEmpty() ? -1 : box_.findText(typed, Qt::MatchFixedString);
  box_.setCurrentIndex(found);
  if (found >= 0) {
    Choose(found);
    return;
  }
  box_.setEditText(typed);
  if (chosen_ >= 0) {
    chosen_ = -1;
    Q_EMIT choiceCleared();
  }
}

}  // namespace quayline
