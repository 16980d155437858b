// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/firewall_change_dialog.h"

#include "core/entry_firewall.h"
#include "ui/network/firewall_texts.h"
#include "ui/network/firewall_words.h"
#include "ui_firewall_change_dialog.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

}  // namespace

FirewallChangeDialog::FirewallChangeDialog(Firewall& firewall,
                                           std::optional<QList<FirewallPorts>> added,
                                           const Translator& translator, QWidget* parent)
    : QDialog(parent),
      added_(std::move(added)),
      translator_(translator),
      exceptions_(firewall),
      ui_(std::make_unique<Ui::FirewallChangeDialog>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(Text(added_ ? message::kAddPortsTitle : message::kRemovePortsTitle));
  ui_->explanation_label->setText(
      Text(added_ ? message::kAddPortsExplanation : message::kRemovePortsExplanation));
  ui_->count_label->setText(Text(message::kWaitForFirewall));
  connect(&exceptions_, &FirewallExceptions::progressed, this, &FirewallChangeDialog::ShowProgress);
  connect(&exceptions_, &FirewallExceptions::ended, this, &FirewallChangeDialog::ShowEnd);
  connect(ui_->stop_button, &QPushButton::clicked, this, &FirewallChangeDialog::Stop);
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::reject);
  SetWorking(true);
  // The window is painted first.
  start_timer_.setSingleShot(true);
  connect(&start_timer_, &QTimer::timeout, this, &FirewallChangeDialog::Begin);
  start_timer_.start(100ms);
}

FirewallChangeDialog::~FirewallChangeDialog() { exceptions_.Cancel(); }

void FirewallChangeDialog::Begin() {
  if (!added_) {
    exceptions_.RemoveOwn();
  } else if (added_->isEmpty()) {
    ShowEnd({});
    ui_->note_label->setText(Text(message::kEmptyPortList));
  } else {
    exceptions_.Add(*added_);
  }
}

void FirewallChangeDialog::ShowProgress(qint64 port, qint64 ports, const QString& rule_name) {
  ui_->progress_bar->setMaximum(static_cast<int>(ports));
  ui_->progress_bar->setValue(static_cast<int>(port - 1));
  ui_->count_label->setText(added_ ? QStringLiteral("%1/%2 - %3 %4")
                                         .arg(QString::number(port), QString::number(ports),
                                              Text(message::kAddingRule), rule_name)
                                   : Text(message::kRemovingRule) + QLatin1Char(' ') + rule_name);
}

void FirewallChangeDialog::ShowEnd(const FirewallChangeEnd& end) {
  SetWorking(false);
  ui_->count_label->setText(QString::number(end.ports) + QLatin1Char(' ') +
                            Text(added_ ? message::kPortsAdded : message::kPortsRemoved));
  ui_->note_label->setText(NoteOf(end));
  if (!end.error) {
    ui_->progress_bar->setMaximum(1);
    ui_->progress_bar->setValue(1);
    Q_EMIT succeeded();
  }
}

QString FirewallChangeDialog::NoteOf(const FirewallChangeEnd& end) const {
  if (end.error) {
    return FirewallErrorText(*end.error, false, translator_);
  }
  if (end.kind == FirewallKind::kNone) {
    return Text(message::kNoFirewall);
  }
  const bool forgets = added_ && end.kind == FirewallKind::kNftables;
  QString note =
      Text(forgets ? message::kForgetsAtRestart : message::kFirewallIs).arg(FirewallName(end.kind));
  if (!added_ && end.ports == 0) {
    note += QLatin1Char(' ') + Text(message::kNoOwnRules);
  }
  return note;
}

void FirewallChangeDialog::Stop() {
  start_timer_.stop();
  exceptions_.Cancel();
  SetWorking(false);
  ui_->count_label->setText(Text(message::kChangeStopped));
}

void FirewallChangeDialog::SetWorking(bool working) {
  ui_->stop_button->setEnabled(working);
  if (!working) {
    ui_->close_button->setFocus();
  }
}

}  // namespace quayline
