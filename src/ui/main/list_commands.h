// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPersistentModelIndex>

#include <functional>
#include <optional>

#include "core/app_context.h"
#include "core/list_history.h"
#include "core/port_list_file.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// What the user does with the port list as a whole: remove, save, open, undo. Each change is
// written to "list.qyl" at once, so there is never anything unsaved. Asks through Prompts in front
// of `window`, which owns it.
class ListCommands final : public QObject {
  Q_OBJECT

 public:
  ListCommands(AppContext& context, Prompts& prompts, QWidget* window);

  // The list of the last run. A missing file makes an empty one. A file that cannot be read is left
  // alone, so that nothing is lost by looking at it; the first change that is kept moves it aside.
  void LoadAtStart();
  // Asks and removes. Rows that the list does not have are ignored.
  void Remove(const QList<int>& rows);
  void RemoveAll();
  void SaveAs();
  // Replaces the list and makes the opened one the working list. A file that cannot be read changes
  // nothing.
  void Open();
  // As Open(), for a file that was chosen otherwise. False when it cannot be read.
  bool OpenFile(const QString& file);
  // As OpenFile(), for a file that reached the window by one slip of the hand: asks first when the
  // user has rows that it would replace.
  void OfferFile(const QString& file);
  // Writes "list.qyl". To be called behind every change of the rows that is meant to stay.
  void Keep();

  // Whole changes of the list, one step back or on.
  void Undo() { ShowState(history_.Undo()); }
  void Redo() { ShowState(history_.Redo()); }
  bool CanUndo() const { return history_.CanUndo(); }
  bool CanRedo() const { return history_.CanRedo(); }

 Q_SIGNALS:
  // The rows were read or written: columns and totals are due.
  void listWritten();

 private:
  std::optional<QList<PortEntry>> ReadFile(const QString& file);
  void Take(QList<PortEntry> entries);
  void SaveFile(const QString& file);
  void ShowState(std::optional<QList<PortEntry>> state);
  bool WriteWorkingFile();
  QString WorkingFile() const { return context_.FileInFolder("list.qyl"); }
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  QWidget* window_;
  ListHistory history_;
  QString aside_;            // where a list that could not be read goes ahead of the first change
  bool has_failed_ = false;  // to write the list the last time, of which the user was told
};

}  // namespace quayline
