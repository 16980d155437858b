// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/entry_form.h"

#include "core/port_range.h"
#include "ui/entries/entry_inputs.h"
#include "ui/entries/entry_texts.h"
#include "ui_entry_form.h"

namespace quayline {

EntryForm::EntryForm(const AppContext& context, Purpose purpose, QWidget* name_field,
                     QWidget* parent)
    : QWidget(parent),
      context_(context),
      purpose_(purpose),
      limits_(LimitsOf(context.session)),
      ui_(std::make_unique<Ui::EntryForm>()) {
  ui_->setupUi(this);
  ui_->entry_grid->addWidget(name_field, 0, 1);
  ui_->name_label->setBuddy(name_field);
  OrderTabs(name_field);
  AddNote(EntryField::kName, ui_->name_note_label, name_field);
  AddNote(EntryField::kProtocol, ui_->protocol_note_label, ui_->protocol_box);
  AddNote(EntryField::kStartPort, ui_->start_port_note_label, ui_->start_port_edit);
  AddNote(EntryField::kEndPort, ui_->end_port_note_label, ui_->end_port_edit);
  AddNote(EntryField::kAddress, ui_->address_note_label, ui_->address_box);
  FillProtocols(*ui_->protocol_box, purpose == Purpose::kEdit || HasRuleForBoth(context.session));
  MakeAddressBox(*ui_->address_box, *ui_->detect_address_button, context);
  ConnectPorts();
}

EntryForm::~EntryForm() = default;

void EntryForm::OrderTabs(QWidget* name_field, QWidget* next) {
  QWidget* before = name_field;
  for (QWidget* field :
       std::initializer_list<QWidget*>{ui_->protocol_box, ui_->start_port_edit, ui_->end_port_edit,
                                       ui_->address_box, ui_->detect_address_button}) {
    setTabOrder(before, field);
    before = field;
  }
  if (next != nullptr) {
    setTabOrder(before, next);
  }
}

void EntryForm::AddNote(EntryField field, QLabel* line, QWidget* control) {
  notes_.insert(field, new FieldNote(line, control));
}

void EntryForm::ConnectPorts() {
  const bool takes_several = purpose_ == Purpose::kNew;
  ui_->start_port_hint_label->setText(LimitsHint(context_.session));
  ui_->end_port_hint_label->setText(LimitsHint(context_.session));
  MakePortField(*ui_->start_port_edit, takes_several);
  MakePortField(*ui_->end_port_edit, false);
  if (takes_several) {
    notes_[EntryField::kStartPort]->SetHint(Text(message::kSeveralPorts));
  }
  connect(ui_->start_port_edit, &QLineEdit::textEdited, this, &EntryForm::FollowStart);
  connect(ui_->end_port_edit, &QLineEdit::textEdited, this,
          [this](const QString& end) { end_follows_ = end.isEmpty(); });
  connect(ui_->start_port_edit, &QLineEdit::textChanged, this, [this](const QString& start) {
    ui_->end_port_edit->setEnabled(!start.contains(QLatin1Char(',')));
  });
  connect(ui_->start_port_edit, &QLineEdit::editingFinished, this, [this] {
    SplitRange();
    SettlePort(EntryField::kStartPort);
    FollowStart(ui_->start_port_edit->text());
  });
  connect(ui_->end_port_edit, &QLineEdit::editingFinished, this, [this] {
    FollowStart(ui_->start_port_edit->text());
    SettlePort(EntryField::kEndPort);
  });
}

void EntryForm::FollowStart(const QString& start) {
  if (end_follows_) {
    ui_->end_port_edit->setText(IsPortList(start) ? QString() : start);
  }
}

// "6000-6010" in the first field is what both fields are for.
void EntryForm::SplitRange() {
  const auto ranges = ParsePortRanges(ui_->start_port_edit->text());
  if (ranges && ranges->size() == 1 && IsPortList(ui_->start_port_edit->text())) {
    ShowPorts(QString::number(ranges->first().start), QString::number(ranges->first().end));
    SettlePort(EntryField::kEndPort);
  }
}

// The user finds what he typed in the problem's text.
void EntryForm::SettlePort(EntryField field) {
  auto* edit = static_cast<QLineEdit*>(notes_[field]->Field());
  const QString typed = edit->text();
  const QString settled = SettledPort(typed, limits_);
  if (settled == typed) {
    return;
  }
  edit->setText(settled);
  if (PortNumber(settled) != PortNumber(typed)) {
    notes_[field]->ShowProblem(Text(message::kPortMoved)
                                   .arg(typed, QString::number(limits_.min_port),
                                        QString::number(limits_.max_port), settled));
    moved_.removeAll(field);
    moved_.append(field);
  }
}

bool EntryForm::ArePortsSeen() {
  while (!moved_.isEmpty()) {
    FieldNote* note = notes_[moved_.takeFirst()];
    if (note->HasProblem()) {
      note->Field()->setFocus();
      static_cast<QLineEdit*>(note->Field())->selectAll();
      moved_.clear();
      return false;
    }
  }
  return true;
}

TypedEntry EntryForm::Typed(const QString& name) const {
  return {.name = name,
          .protocol = ProtocolOf(ui_->protocol_box->currentText()),
          .start_port = ui_->start_port_edit->text(),
          .end_port = ui_->end_port_edit->text(),
          .address = ui_->address_box->currentText()};
}

void EntryForm::ShowPorts(const QString& start, const QString& end) {
  ui_->start_port_edit->setText(start);
  ui_->end_port_edit->setText(end);
  end_follows_ = start == end;
}

void EntryForm::ShowProtocol(const QString& protocol) {
  const int found = ui_->protocol_box->findText(protocol, Qt::MatchFixedString);
  if (found >= 0 || purpose_ == Purpose::kEdit) {
    ui_->protocol_box->setCurrentIndex(found);
  }
}

void EntryForm::ShowAddress(const QString& address) { ui_->address_box->setEditText(address); }

void EntryForm::ShowProblem(const EntryProblem& problem) {
  ClearProblems();
  FieldNote* note = notes_.value(problem.field);
  note->ShowProblem(problem.message);
  note->Field()->setFocus();
}

void EntryForm::ClearProblems() {
  for (FieldNote* note : std::as_const(notes_)) {
    note->ClearProblem();
  }
}

void EntryForm::FocusAddress() { ui_->address_box->setFocus(); }

}  // namespace quayline
