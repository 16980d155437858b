// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>

#include "async/flow.h"
#include "core/app_context.h"
#include "platform/foreign_settings.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class ProgramPage;
}

namespace quayline {

class ComputerNameSearch;
class FieldNote;
class ProgramBox;
struct EntryProblem;

// The page of the add dialog that adds the ports of a known program: one of the database, or one
// whose own settings are read.
class ProgramPage final : public QWidget {
  Q_OBJECT

 public:
  ProgramPage(AppContext& context, Prompts& prompts, ComputerNameSearch& names,
              const ForeignSettings& foreign_settings, QWidget* parent);
  ~ProgramPage() override;

  // Loads the programs when it is shown for the first time.
  void FocusFirst();
  Task<> Add();
  void CancelLoading() { loading_.Cancel(); }

 Q_SIGNALS:
  // The list has `count` new rows.
  void entriesAdded(qsizetype count);
  // Another program is shown, or none.
  void programChanged();

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void ConnectPrograms();
  void ShowCounts();
  Task<> LoadPrograms();
  // Moves the programs that have settings on this computer to the top of their list.
  Task<> ListInstalled();
  void ShowProgram(const AppPortRecord& program);
  void ForgetProgram();
  void ShowEntriesRequired(int entries);
  void Discover(const QString& program);
  void ShowProblem(const EntryProblem& problem);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  ComputerNameSearch& names_;
  const ForeignSettings& foreign_settings_;
  std::unique_ptr<Ui::ProgramPage> ui_;
  ProgramBox* programs_ = nullptr;
  FieldNote* program_note_ = nullptr;
  FieldNote* address_note_ = nullptr;
  std::optional<AppPortRecord> program_;  // what Add() adds
  int entries_required_ = 0;
  bool is_loaded_ = false;  // the list of programs
  QTimer loading_timer_;    // lets the window appear before its programs
  Flow loading_;
};

}  // namespace quayline
