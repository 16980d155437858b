// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/entries/custom_page.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QLoggingCategory>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/program_entries.h"
#include "ui/entries/computer_name.h"
#include "ui/entries/entry_form.h"
#include "ui/entries/entry_texts.h"
#include "ui/toolkit/controls.h"

namespace quayline {

namespace {

Q_LOGGING_CATEGORY(log_entries, "quayline.ui.entries")

constexpr int kMargin = 8;

}  // namespace

CustomPage::CustomPage(AppContext& context, ComputerNameSearch& names, QWidget* parent)
    : QWidget(parent),
      context_(context),
      names_(names),
      name_box_(new QComboBox),
      form_(new EntryForm(context, EntryForm::Purpose::kNew, name_box_, this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->addWidget(form_);
  layout->addStretch();
  name_box_->setObjectName(QStringLiteral("name_box"));
  name_box_->setAccessibleName(context.translator.Text(message::kNameField));
  name_box_->setEditable(true);
  name_box_->setInsertPolicy(QComboBox::NoInsert);
  name_box_->setCompleter(nullptr);  // would finish a new name by one that is known
  name_box_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  name_box_->installEventFilter(this);
  IgnoreWheel(name_box_);
  FillNames();
  connect(name_box_, &QComboBox::activated, this, &CustomPage::Choose);
  connect(name_box_->lineEdit(), &QLineEdit::textEdited, this, &CustomPage::MarkTypedName);
}

void CustomPage::FocusFirst() { name_box_->setFocus(); }

// When the box is left, it activates the item whose text was typed, unless that item is the current
// one already. Only an item that the user chose brings its ports.
void CustomPage::MarkTypedName(const QString& name) {
  const int known = name_box_->findText(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
  if (known >= 0) {
    const int cursor = name_box_->lineEdit()->cursorPosition();
    const QSignalBlocker blocker(name_box_);
    name_box_->setCurrentIndex(known);
    name_box_->lineEdit()->setCursorPosition(cursor);
  }
}

// The name's field, when it is left for another one of this window.
bool CustomPage::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut && watched == name_box_) {
    const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
    const bool is_left = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
    if (is_left && isVisible() && name_box_->currentText().size() > kMaxNameLength) {
      QMetaObject::invokeMethod(this, &CustomPage::ShowNameTooLong, Qt::QueuedConnection);
    }
  }
  return QWidget::eventFilter(watched, event);
}

void CustomPage::ShowNameTooLong() {
  form_->ShowProblem({context_.translator.Text(message::kNameTooLongOnLeaving), EntryField::kName});
}

void CustomPage::FillNames() {
  customs_ = context_.databases.CustomPorts();
  name_box_->clear();
  for (const CustomPortRecord& custom : std::as_const(customs_)) {
    name_box_->addItem(custom.appname, custom.id);
  }
  name_box_->setCurrentIndex(-1);
}

void CustomPage::Choose(int index) {
  const CustomPortRecord custom = customs_.value(index);
  form_->ShowProtocol(ProtocolText(Protocol::kBoth));
  form_->ShowProtocol(custom.portype);
  form_->ShowPorts(custom.startport, custom.endport);
}

Task<> CustomPage::Add() {
  if (!form_->ArePortsSeen()) {
    co_return;
  }
  form_->ClearProblems();
  const TypedEntry typed = form_->Typed(name_box_->currentText());
  auto made =
      MakeNewEntries(typed, context_.port_list.Entries(), context_.session, context_.translator);
  if (!made) {
    form_->ShowProblem(made.error());
    co_return;
  }
  const std::optional<QString> name = co_await names_.Find(typed.address);
  if (!name) {
    form_->FocusAddress();
    co_return;
  }
  for (PortEntry& entry : *made) {
    entry.forwarded_to = ForwardedTo(typed.address, *name);
  }
  context_.port_list.Append(*made);
  Remember(*made);
  form_->ShowPorts({}, {});
  form_->ShowProtocol(ProtocolText(Protocol::kBoth));
  FillNames();
  FocusFirst();
  Q_EMIT entriesAdded(made->size());
}

void CustomPage::Remember(const QList<PortEntry>& entries) const {
  for (const PortEntry& entry : entries) {
    if (!context_.databases.RememberCustomPort({.appname = entry.app_name,
                                                .portype = entry.protocol,
                                                .startport = entry.start_port,
                                                .endport = entry.end_port})) {
      qCWarning(log_entries) << "the entry cannot be remembered for the next time";
    }
  }
}

}  // namespace quayline
