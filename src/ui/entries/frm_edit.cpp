// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/frm_edit.h"

#include "core/entry_checks.h"
#include "core/entry_fields.h"
#include "core/program_entries.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui_frm_edit.h"

namespace quayline {

namespace {

constexpr ComputerNameTexts kNameTexts{
    {"FrmEdit", "Text16", "Couldn't resolve this IP address to its Name."},
    {"FrmEdit", "Text17", "Example: 192.168.1.100 Belongs to Computer name 'FrontDesk'"},
    {"FrmEdit", "Text18", "Are you sure you want to use this IP address?"}};

}  // namespace

FrmEdit::FrmEdit(AppContext& context, Prompts& prompts, HostNames& host_names, int row,
                 QWidget* parent)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      ui_(std::make_unique<Ui::FrmEdit>()),
      row_(context.port_list.index(row, 0)),
      name_search_(new ComputerNameSearch(context, prompts, host_names, kNameTexts, this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  KeepStatusPlace(*ui_->label_status, *ui_->dBar1);
  SetIdle();
  ui_->Label7->setText(LimitsHint(context.session));
  ui_->Label8->setText(LimitsHint(context.session));
  MakePortField(*ui_->Text2, context.session);
  MakePortField(*ui_->Text3, context.session);
  MakeAddressBox(*ui_->Combo4, *ui_->zCommand3, context.adapters, this);
  FillProtocols(*ui_->Combo1, true);
  ShowEntry(context.port_list.Entries().at(row));
  connect(name_search_, &ComputerNameSearch::started, this,
          [this](const QString& address) { SetBusy(Text(message::kLookingUpName).arg(address)); });
  connect(name_search_, &ComputerNameSearch::ended, this, &FrmEdit::SetIdle);
  connect(ui_->Command1, &QPushButton::clicked, this, [this] { updating_.Start(Update()); });
  connect(ui_->command_close, &QPushButton::clicked, this, &FrmEdit::reject);
}

FrmEdit::~FrmEdit() = default;

void FrmEdit::reject() {
  updating_.Cancel();
  QDialog::reject();
}

void FrmEdit::ShowEntry(const PortEntry& entry) {
  // A program's row may have a longer name, which is not to be cut by looking at it.
  ui_->Text1->setMaxLength(static_cast<int>(std::max(kMaxNameLength, entry.app_name.size())));
  ui_->Text1->setText(entry.app_name);
  ui_->Combo4->setEditText(AddressOf(entry.forwarded_to));
  ui_->Text2->setText(entry.start_port);
  ui_->Text3->setText(entry.end_port);
  ui_->Combo1->setCurrentIndex(ui_->Combo1->findText(entry.protocol, Qt::MatchFixedString));
  ui_->Text1->selectAll();
}

void FrmEdit::SetBusy(const QString& text) {
  ui_->entry_card->setEnabled(false);
  ui_->Command1->setEnabled(false);
  ui_->label_status->setText(text);
  ui_->dBar1->SetMoving(true);
  ui_->dBar1->show();
}

void FrmEdit::SetIdle() {
  ui_->entry_card->setEnabled(true);
  ui_->Command1->setEnabled(true);
  ui_->label_status->clear();
  ui_->dBar1->hide();
}

Task<> FrmEdit::Update() {
  const TypedEntry typed = {.name = ui_->Text1->text(),
                            .protocol = ui_->Combo1->currentText(),
                            .start_port = ui_->Text2->text(),
                            .end_port = ui_->Text3->text(),
                            .address = ui_->Combo4->currentText()};
  const EntryVerdict verdict = CheckEditedEntry(typed, row_.row(), context_.port_list.Entries(),
                                                context_.session, context_.translator);
  if (!verdict.accepted) {
    prompts_.Tell(this, verdict.message);
    if (verdict.focus == EntryField::kAddress) {
      ui_->Combo4->setFocus();
    }
    co_return;
  }
  const std::optional<QString> name = co_await name_search_->Find(typed.address);
  if (!name || !row_.isValid()) {
    ui_->Combo4->setFocus();
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
