// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPersistentModelIndex>
#include <QTimer>

#include <functional>
#include <optional>

#include "core/app_context.h"
#include "core/list_history.h"
#include "core/port_list_file.h"
#include "core/working_list.h"
#include "ui/toolkit/prompts.h"

namespace quayline {

// What the user does with the port list as a whole: remove, save, open, undo. Each change is
// written to "list.qyl" at once, so there is never anything unsaved. When another program has
// changed that file, the user is asked, and no row of either list is lost. Asks through Prompts in
// front of `window`, which owns it.
class ListCommands final : public QObject {
  Q_OBJECT

 public:
  ListCommands(AppContext& context, Prompts& prompts, QWidget* window);

  // The list of the last run. A missing file is created empty. A file that cannot be read is not
  // touched; the first change of the list moves it to another name.
  void LoadAtStart();
  // Asks and removes. Rows that the list does not have are ignored.
  void Remove(const QList<int>& rows);
  void RemoveAll();
  void SaveAs();
  // Replaces the list and makes the opened one the working list. A file that cannot be read changes
  // nothing. Where lines of it are no entries, the user is shown them first, and decides.
  void Open();
  // As Open(), for a file that was chosen otherwise. `opened` is called once the list is there.
  void OpenFile(const QString& file, const std::function<void()>& opened = [] {});
  // As OpenFile(), for a file that may have been dropped on the window by mistake: asks first if it
  // would replace rows.
  void OfferFile(const QString& file);
  // Writes "list.qyl". To be called after every change of the rows that is to be kept.
  void Keep();

  // Writes "list.qyl" if that failed the last time; a timer tries it every few seconds as well. A
  // list that the user was asked about, and has not answered, is stored under another name. To be
  // called at the end.
  void Finish();

  // Whole changes of the list, one step back or on.
  void Undo() { ShowState(history_.Undo()); }
  void Redo() { ShowState(history_.Redo()); }
  bool CanUndo() const { return history_.CanUndo(); }
  bool CanRedo() const { return history_.CanRedo(); }

 Q_SIGNALS:
  // The rows were read or written, or could not be written: columns and totals have to be updated.
  void listWritten();

 private:
  struct OpenedList {
    QList<PortEntry> entries;
    QList<ListFault> faults;
  };

  std::optional<OpenedList> ReadFile(const QString& file);
  void AskAboutFaults(const QString& file, const OpenedList& list,
                      const std::function<void()>& opened);
  void Take(QList<PortEntry> entries);
  void SaveFile(const QString& file);
  void ShowState(std::optional<QList<PortEntry>> state);
  std::expected<void, ListFileError> WriteWorkingFile();
  bool StorePending();
  void NoteWritten(bool is_written);
  void AskWhichList();
  void KeepChosen(qsizetype choice, const QString& copy);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  QWidget* window_;
  WorkingList working_list_;
  ListHistory history_;
  QString aside_;           // the new name of a list that could not be read
  QTimer retry_timer_;      // runs while the last write has failed, which the user knows
  bool is_asking_ = false;  // which of two lists to keep
};

}  // namespace quayline
