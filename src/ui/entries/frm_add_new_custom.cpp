// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The page on which the user types an entry.

#include <QFocusEvent>
#include <QLoggingCategory>

#include "core/entry_fields.h"
#include "core/program_entries.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui/entries/frm_add_new.h"
#include "ui_frm_add_new.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_entries, "quayline.ui.entries")

}  // namespace

void FrmAddNew::ConnectCustomPage() {
  const RouterSession& session = context_.session;
  ui_->Label7->setText(LimitsHint(session));
  ui_->Label8->setText(LimitsHint(session));
  MakePortField(*ui_->Text2, session);
  MakePortField(*ui_->Text3, session);
  MakeAddressBox(*ui_->Combo4, *ui_->zCommand3, context_.adapters, this);
  FillProtocols(*ui_->Combo1, HasRuleForBoth(session));
  ui_->Combo2->setCompleter(nullptr);  // would finish a new name by one that is known
  ui_->Combo2->installEventFilter(this);
  FillCustomNames();
  connect(ui_->Combo2, &QComboBox::activated, this, &FrmAddNew::ChooseCustom);
  connect(ui_->Command1, &QPushButton::clicked, this, [this] { adding_.Start(AddCustom()); });
}

// The name's field, when it is left for another one of this window.
bool FrmAddNew::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut && watched == ui_->Combo2) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    const bool is_left = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
    if (is_left && isVisible() && ui_->Combo2->currentText().size() > kMaxNameLength) {
      prompts_.Tell(this, Text(message::kNameTooLongOnLeaving),
                    [this] { ui_->Combo2->setFocus(); });
    }
  }
  return QDialog::eventFilter(watched, event);
}

void FrmAddNew::FillCustomNames() {
  customs_ = context_.databases.CustomPorts();
  ui_->Combo2->clear();
  for (const CustomPortRecord& custom : std::as_const(customs_)) {
    ui_->Combo2->addItem(custom.appname, custom.id);
  }
  ui_->Combo2->setCurrentIndex(-1);
}

void FrmAddNew::ClearCustomFields() {
  ui_->Text2->clear();
  ui_->Text3->clear();
  SelectProtocol(QStringLiteral("TCP/UDP"));
}

void FrmAddNew::ChooseCustom(int index) {
  ClearCustomFields();
  const CustomPortRecord custom = customs_.value(index);
  SelectProtocol(custom.portype);
  ui_->Text2->setText(custom.startport);
  ui_->Text3->setText(custom.endport);
}

// One that the selected router lacks changes nothing.
void FrmAddNew::SelectProtocol(const QString& protocol) {
  if (const int found = ui_->Combo1->findText(protocol, Qt::MatchFixedString); found >= 0) {
    ui_->Combo1->setCurrentIndex(found);
  }
}

Task<> FrmAddNew::AddCustom() {
  const TypedEntry typed = {.name = ui_->Combo2->currentText(),
                            .protocol = ui_->Combo1->currentText(),
                            .start_port = ui_->Text2->text(),
                            .end_port = ui_->Text3->text(),
                            .address = ui_->Combo4->currentText()};
  const EntryVerdict verdict =
      CheckNewEntry(typed, context_.port_list.Entries(), context_.session, context_.translator);
  if (!verdict.accepted) {
    Refuse(verdict, ui_->Combo4);
    co_return;
  }
  const std::optional<QString> name = co_await name_search_->Find(typed.address);
  if (!name) {
    ui_->Combo4->setFocus();
    co_return;
  }
  AddRows({{.app_name = typed.name,
            .forwarded_to = ForwardedTo(typed.address, *name),
            .start_port = typed.start_port,
            .end_port = typed.end_port,
            .protocol = typed.protocol,
            .description = typed.name}});
  if (!context_.databases.RememberCustomPort({.appname = typed.name,
                                              .portype = typed.protocol,
                                              .startport = typed.start_port,
                                              .endport = typed.end_port})) {
    qCWarning(log_entries) << "the entry cannot be remembered for the next time";
  }
  ClearCustomFields();
  FillCustomNames();
  ui_->Combo2->setFocus();
}

}  // namespace quayline
