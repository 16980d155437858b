// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPersistentModelIndex>

#include <memory>

#include "async/flow.h"
#include "core/app_context.h"
#include "core/entry_checks.h"
#include "platform/host_names.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class EditEntryDialog;
}

class QLineEdit;

namespace quayline {

class ComputerNameSearch;
class EntryForm;

// Changes one row of the port list, and closes after that. The list may be replaced meanwhile: then
// the entry can be added to the new one. Closing the dialog otherwise changes nothing, also during
// a search for a computer's name. Deletes itself when it is closed.
class EditEntryDialog final : public QDialog {
  Q_OBJECT

 public:
  // `row` is a row of the list.
  EditEntryDialog(AppContext& context, Prompts& prompts, HostNames& host_names, int row,
                  QWidget* parent);
  ~EditEntryDialog() override;

  void reject() override;

 Q_SIGNALS:
  // The row has changed and is to be stored.
  void entryChanged();

 private:
  void ShowEntry();
  void SetBusy(const QString& address);
  void SetIdle();
  // Shows why what was typed is refused.
  bool IsRefused(const TypedEntry& typed);
  Task<> Update();
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  std::unique_ptr<Ui::EditEntryDialog> ui_;
  QLineEdit* name_edit_;
  EntryForm* form_;
  QPersistentModelIndex row_;
  PortEntry entry_;  // as it was when the dialog opened
  ComputerNameSearch* names_;
  Flow updating_;
};

}  // namespace quayline
