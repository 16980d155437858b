// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// The page on which the user types an entry.

#include <QFocusEvent>
#include <QLoggingCategory>

#include "core/entry_fields.h"
#include "core/program_entries.h"
#include "ui/entries/add_entry_dialog.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui_add_entry_dialog.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_entries, "quayline.ui.entries")

}  // namespace

void AddEntryDialog::ConnectCustomPage() {
  const RouterSession& session = context_.session;
  ui_->start_port_hint_label->setText(LimitsHint(session));
  ui_->end_port_hint_label->setText(LimitsHint(session));
  MakePortField(*ui_->start_port_edit, session);
  MakePortField(*ui_->end_port_edit, session);
  MakeAddressBox(*ui_->custom_address_box, *ui_->detect_custom_address_button, context_.adapters,
                 this);
  FillProtocols(*ui_->protocol_box, HasRuleForBoth(session));
  ui_->name_box->setCompleter(nullptr);  // would complete a new name by a known one
  ui_->name_box->installEventFilter(this);
  FillCustomNames();
  connect(ui_->name_box, &QComboBox::activated, this, &AddEntryDialog::ChooseCustom);
  connect(ui_->add_custom_button, &QPushButton::clicked, this,
          [this] { adding_.Start(AddCustom()); });
}

// The name's field has lost the focus to another one of this window.
bool AddEntryDialog::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut && watched == ui_->name_box) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    const bool is_left = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
    if (is_left && isVisible() && ui_->name_box->currentText().size() > kMaxNameLength) {
      prompts_.Tell(this, Text(message::kNameTooLongOnLeaving),
                    [this] { ui_->name_box->setFocus(); });
    }
  }
  return QDialog::eventFilter(watched, event);
}

void AddEntryDialog::FillCustomNames() {
  customs_ = context_.databases.CustomPorts();
  ui_->name_box->clear();
  for (const CustomPortRecord& custom : std::as_const(customs_)) {
    ui_->name_box->addItem(custom.appname, custom.id);
  }
  ui_->name_box->setCurrentIndex(-1);
}

void AddEntryDialog::ClearCustomFields() {
  ui_->start_port_edit->clear();
  ui_->end_port_edit->clear();
  SelectProtocol(QStringLiteral("TCP/UDP"));
}

void AddEntryDialog::ChooseCustom(int index) {
  ClearCustomFields();
  const CustomPortRecord custom = customs_.value(index);
  SelectProtocol(custom.portype);
  ui_->start_port_edit->setText(custom.startport);
  ui_->end_port_edit->setText(custom.endport);
}

// A protocol that the selected router lacks changes nothing.
void AddEntryDialog::SelectProtocol(const QString& protocol) {
  if (const int found = ui_->protocol_box->findText(protocol, Qt::MatchFixedString); found >= 0) {
    ui_->protocol_box->setCurrentIndex(found);
  }
}

Task<> AddEntryDialog::AddCustom() {
  const TypedEntry typed = {.name = ui_->name_box->currentText(),
                            .protocol = ui_->protocol_box->currentText(),
                            .start_port = ui_->start_port_edit->text(),
                            .end_port = ui_->end_port_edit->text(),
                            .address = ui_->custom_address_box->currentText()};
  const EntryVerdict verdict =
      CheckNewEntry(typed, context_.port_list.Entries(), context_.session, context_.translator);
  if (!verdict.accepted) {
    Refuse(verdict, ui_->custom_address_box);
    co_return;
  }
  const std::optional<QString> name = co_await name_search_->Find(typed.address);
  if (!name) {
    ui_->custom_address_box->setFocus();
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
  ui_->name_box->setFocus();
}

}  // namespace quayline
