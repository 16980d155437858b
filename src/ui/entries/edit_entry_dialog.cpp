// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/edit_entry_dialog.h"

#include <QLineEdit>

#include "async/wait.h"
#include "core/program_entries.h"
#include "ui/entries/computer_name.h"
#include "ui/entries/entry_form.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui/toolkit/settle_focus.h"
#include "ui_edit_entry_dialog.h"

namespace quayline {

EditEntryDialog::EditEntryDialog(AppContext& context, Prompts& prompts, HostNames& host_names,
                                 int row, QWidget* parent)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      ui_(std::make_unique<Ui::EditEntryDialog>()),
      name_edit_(new QLineEdit),
      form_(new EntryForm(context, EntryForm::Purpose::kEdit, name_edit_, this)),
      row_(context.port_list.index(row, 0)),
      entry_(context.port_list.Entries().at(row)),
      names_(new ComputerNameSearch(context, prompts, host_names, this)) {
  ui_->setupUi(this);
  ui_->page_layout->insertWidget(0, form_);
  form_->OrderTabs(name_edit_, ui_->update_button);
  setTabOrder(ui_->update_button, ui_->cancel_button);
  setAttribute(Qt::WA_DeleteOnClose);
  KeepStatusPlace(*ui_->status_label, *ui_->busy_bar);
  SetIdle();
  ShowEntry();
  connect(names_, &ComputerNameSearch::started, this, &EditEntryDialog::SetBusy);
  connect(names_, &ComputerNameSearch::ended, this, &EditEntryDialog::SetIdle);
  ConnectCommand(ui_->update_button, this, [this] {
    if (form_->ArePortsSeen()) {
      updating_.Start(Update());
    }
  });
  connect(ui_->cancel_button, &QPushButton::clicked, this, &EditEntryDialog::reject);
}

EditEntryDialog::~EditEntryDialog() = default;

void EditEntryDialog::reject() {
  updating_.Cancel();
  QDialog::reject();
}

void EditEntryDialog::ShowEntry() {
  // A program's row may have a longer name, which is not to be cut by looking at it.
  name_edit_->setMaxLength(static_cast<int>(std::max(kMaxNameLength, entry_.app_name.size())));
  name_edit_->setObjectName(QStringLiteral("name_edit"));
  name_edit_->setAccessibleName(Text(message::kNameField));
  name_edit_->setText(entry_.app_name);
  name_edit_->selectAll();
  name_edit_->setFocus();
  form_->ShowProtocol(entry_.protocol);
  form_->ShowPorts(entry_.start_port, entry_.end_port);
  form_->ShowAddress(AddressOf(entry_.forwarded_to));
}

void EditEntryDialog::SetBusy(const QString& address) {
  form_->setEnabled(false);
  ui_->update_button->setEnabled(false);
  ui_->status_label->setText(Text(message::kLookingUpName).arg(address));
  ui_->busy_bar->SetMoving(true);
  ui_->busy_bar->show();
}

void EditEntryDialog::SetIdle() {
  form_->setEnabled(true);
  ui_->update_button->setEnabled(true);
  ui_->status_label->clear();
  ui_->busy_bar->hide();
}

// The row of an invalid index is -1. The entry may leave the list during any wait.
bool EditEntryDialog::IsRefused(const TypedEntry& typed) {
  const auto problem = CheckEditedEntry(typed, row_.row(), context_.port_list.Entries(),
                                        context_.session, context_.translator);
  if (problem) {
    form_->ShowProblem(*problem);
  }
  return problem.has_value();
}

Task<> EditEntryDialog::Update() {
  form_->ClearProblems();
  const TypedEntry typed = form_->Typed(name_edit_->text());
  if (IsRefused(typed)) {
    co_return;
  }
  const std::optional<QString> name = co_await names_->Find(typed.address);
  if (!name) {
    form_->FocusAddress();
    co_return;
  }
  PortEntry entry = row_.isValid() ? context_.port_list.Entries().at(row_.row()) : entry_;
  entry.app_name = typed.name;
  entry.forwarded_to = ForwardedTo(typed.address, *name);
  entry.start_port = typed.start_port;
  entry.end_port = typed.end_port;
  entry.protocol = ProtocolText(*typed.protocol);
  if (row_.isValid()) {
    context_.port_list.Replace(row_.row(), entry);
  } else {
    const OneShot<bool> answer;
    prompts_.Ask(this, Text(message::kEntryGoneTitle), Text(message::kEntryGone),
                 answer.Callback());
    const std::optional<bool> adds = co_await answer;
    if (!adds.value_or(false) || IsRefused(typed)) {
      co_return;
    }
    context_.port_list.Append({entry});
  }
  Q_EMIT entryChanged();
  accept();
}

}  // namespace quayline
