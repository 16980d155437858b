// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/edit_entry_dialog.h"

#include "core/entry_checks.h"
#include "core/entry_fields.h"
#include "core/program_entries.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui_edit_entry_dialog.h"

namespace quayline {

EditEntryDialog::EditEntryDialog(AppContext& context, Prompts& prompts, HostNames& host_names,
                                 int row, QWidget* parent)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      ui_(std::make_unique<Ui::EditEntryDialog>()),
      row_(context.port_list.index(row, 0)),
      name_search_(new ComputerNameSearch(context, prompts, host_names, this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  KeepStatusPlace(*ui_->status_label, *ui_->busy_bar);
  SetIdle();
  ui_->start_port_hint_label->setText(LimitsHint(context.session));
  ui_->end_port_hint_label->setText(LimitsHint(context.session));
  MakePortField(*ui_->start_port_edit, context.session);
  MakePortField(*ui_->end_port_edit, context.session);
  MakeAddressBox(*ui_->address_box, *ui_->detect_address_button, context.adapters, this);
  FillProtocols(*ui_->protocol_box, true);
  ShowEntry(context.port_list.Entries().at(row));
  connect(name_search_, &ComputerNameSearch::started, this,
          [this](const QString& address) { SetBusy(Text(message::kLookingUpName).arg(address)); });
  connect(name_search_, &ComputerNameSearch::ended, this, &EditEntryDialog::SetIdle);
  connect(ui_->update_button, &QPushButton::clicked, this, [this] { updating_.Start(Update()); });
  connect(ui_->cancel_button, &QPushButton::clicked, this, &EditEntryDialog::reject);
}

EditEntryDialog::~EditEntryDialog() = default;

void EditEntryDialog::reject() {
  updating_.Cancel();
  QDialog::reject();
}

void EditEntryDialog::ShowEntry(const PortEntry& entry) {
  // A program's row may have a longer name, which must not be cut.
  ui_->name_edit->setMaxLength(static_cast<int>(std::max(kMaxNameLength, entry.app_name.size())));
  ui_->name_edit->setText(entry.app_name);
  ui_->address_box->setEditText(AddressOf(entry.forwarded_to));
  ui_->start_port_edit->setText(entry.start_port);
  ui_->end_port_edit->setText(entry.end_port);
  ui_->protocol_box->setCurrentIndex(
      ui_->protocol_box->findText(entry.protocol, Qt::MatchFixedString));
  ui_->name_edit->selectAll();
}

void EditEntryDialog::SetBusy(const QString& text) {
  ui_->entry_card->setEnabled(false);
  ui_->update_button->setEnabled(false);
  ui_->status_label->setText(text);
  ui_->busy_bar->SetMoving(true);
  ui_->busy_bar->show();
}

void EditEntryDialog::SetIdle() {
  ui_->entry_card->setEnabled(true);
  ui_->update_button->setEnabled(true);
  ui_->status_label->clear();
  ui_->busy_bar->hide();
}

Task<> EditEntryDialog::Update() {
  const TypedEntry typed = {.name = ui_->name_edit->text(),
                            .protocol = ui_->protocol_box->currentText(),
                            .start_port = ui_->start_port_edit->text(),
                            .end_port = ui_->end_port_edit->text(),
                            .address = ui_->address_box->currentText()};
  const EntryVerdict verdict = CheckEditedEntry(typed, row_.row(), context_.port_list.Entries(),
                                                context_.session, context_.translator);
  if (!verdict.accepted) {
    prompts_.Tell(this, verdict.message);
    if (verdict.focus == EntryField::kAddress) {
      ui_->address_box->setFocus();
    }
    co_return;
  }
  const std::optional<QString> name = co_await name_search_->Find(typed.address);
  if (!name || !row_.isValid()) {
    ui_->address_box->setFocus();
    co_return;
  }
  PortEntry entry = context_.port_list.Entries().at(row_.row());
  entry.app_name = typed.name;
  entry.forwarded_to = ForwardedTo(typed.address, *name);
  entry.start_port = typed.start_port;
  entry.end_port = typed.end_port;
  entry.protocol = typed.protocol;
  context_.port_list.Replace(row_.row(), entry);
  Q_EMIT entryChanged();
  accept();
}

}  // namespace quayline
