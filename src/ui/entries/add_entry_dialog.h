// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include <memory>

#include "async/flow.h"
#include "core/app_context.h"
#include "platform/foreign_settings.h"
#include "platform/host_names.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class AddEntryDialog;
}

namespace quayline {

class ComputerNameSearch;
class CustomPage;
class ProgramPage;

// Adds rows to the port list: those of a known program, or one that is typed. Stays open after each
// addition. Closing it cancels a search for a computer's name; nothing is added then. Deletes
// itself when it is closed.
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
  bool IsCustom() const;
  void FocusPage();
  void SetBusy(const QString& address);
  void SetIdle();
  void ShowAdded(qsizetype count);
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  std::unique_ptr<Ui::AddEntryDialog> ui_;
  ComputerNameSearch* names_;
  ProgramPage* program_page_;
  CustomPage* custom_page_;
  Flow adding_;
};

}  // namespace quayline
