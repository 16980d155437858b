// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QButtonGroup>
#include <QDialog>
#include <QTimer>

#include <memory>
#include <optional>

#include "async/flow.h"
#include "core/app_context.h"
#include "core/entry_checks.h"
#include "platform/foreign_settings.h"
#include "ui/entries/computer_name.h"
#include "ui/entries/program_box.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class AddEntryDialog;
}

namespace quayline {

// Adds rows to the port list: those of a known program, or one that is typed. Stays open after each
// addition. Closing it ends a search for a computer's name that is under way, and nothing is added
// then. Deletes itself when it is closed.
class AddEntryDialog final : public QDialog {
  Q_OBJECT

 public:
  AddEntryDialog(AppContext& context, Prompts& prompts, HostNames& host_names,
                 const ForeignSettings& foreign_settings, QWidget* parent);
  ~AddEntryDialog() override;

  void reject() override;

 Q_SIGNALS:
  // The list has new rows, which are to be stored.
  void entriesAdded();

 private:
  void ConnectPages();
  void ConnectDatabasePage();
  void ConnectCustomPage();
  bool eventFilter(QObject* watched, QEvent* event) override;

  void ShowPage(bool is_custom);
  void SetBusy(const QString& text);
  void SetIdle();
  void SetInputsEnabled(bool enabled);
  Task<> LoadPrograms();
  void ShowProgram(const AppPortRecord& program);
  void ForgetProgram();
  void ShowEntriesRequired(int entries);
  void Discover(const QString& program);
  Task<> AddProgram();

  void FillCustomNames();
  void ClearCustomFields();
  void ChooseCustom(int index);
  void SelectProtocol(const QString& protocol);
  Task<> AddCustom();

  void AddRows(const QList<PortEntry>& entries);
  void Refuse(const EntryVerdict& verdict, QWidget* address_box);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  const ForeignSettings& foreign_settings_;
  std::unique_ptr<Ui::AddEntryDialog> ui_;
  QButtonGroup tabs_;
  ProgramBox* programs_ = nullptr;
  std::optional<AppPortRecord> program_;  // what "Add" of the database page adds
  QList<CustomPortRecord> customs_;       // in the order of the names' list
  ComputerNameSearch* name_search_;
  QTimer loading_timer_;  // the window appears before its programs are read
  Flow loading_;
  Flow adding_;
};

}  // namespace quayline
