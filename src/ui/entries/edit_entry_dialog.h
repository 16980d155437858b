// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QPersistentModelIndex>

#include <memory>

#include "async/flow.h"
#include "core/app_context.h"
#include "ui/entries/computer_name.h"
#include "ui/toolkit/prompts.h"

namespace Ui {
class EditEntryDialog;
}

namespace quayline {

// Changes one row of the port list, and closes when that is done. Closing it otherwise changes
// nothing, also while a computer's name is searched. Deletes itself when it is closed.
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
  void ShowEntry(const PortEntry& entry);
  void SetBusy(const QString& text);
  void SetIdle();
  Task<> Update();
  QString Text(const Message& message) const { return context_.translator.Text(message); }

  AppContext& context_;
  Prompts& prompts_;
  std::unique_ptr<Ui::EditEntryDialog> ui_;
  QPersistentModelIndex row_;
  ComputerNameSearch* name_search_;
  Flow updating_;
};

}  // namespace quayline
