// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/firewall_list_dialog.h"

#include <QStandardItemModel>

#include "core/entry_firewall.h"
#include "ui/network/firewall_texts.h"
#include "ui/network/firewall_words.h"
#include "ui/toolkit/theme.h"
#include "ui_firewall_list_dialog.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

}  // namespace

FirewallListDialog::FirewallListDialog(Firewall& firewall, const Translator& translator,
                                       QWidget* parent)
    : QDialog(parent),
      firewall_(firewall),
      translator_(translator),
      ui_(std::make_unique<Ui::FirewallListDialog>()),
      rows_(new QStandardItemModel(this)) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  OpenOver(*this, {640, 480});
  rows_->setHorizontalHeaderLabels({Text(message::kRuleName), Text(message::kRulePort),
                                    Text(message::kRuleProtocol), Text(message::kRuleEnabled)});
  ui_->rules_view->setModel(rows_);
  ui_->rules_view->SizeColumns();
  // The total follows the rows.
  const auto show_total = [this] { ui_->total_label->setText(QString::number(rows_->rowCount())); };
  connect(rows_, &QAbstractItemModel::rowsInserted, this, show_total);
  connect(rows_, &QAbstractItemModel::rowsRemoved, this, show_total);
  connect(ui_->refresh_button, &QPushButton::clicked, this, &FirewallListDialog::Begin);
  connect(ui_->close_button, &QPushButton::clicked, this, &QDialog::reject);
  start_timer_.setSingleShot(true);
  connect(&start_timer_, &QTimer::timeout, this, &FirewallListDialog::Begin);
  start_timer_.start(100ms);
}

FirewallListDialog::~FirewallListDialog() { flow_.Cancel(); }

void FirewallListDialog::Begin() {
  rows_->removeRows(0, rows_->rowCount());
  ui_->wait_label->show();
  ui_->refresh_button->setEnabled(false);
  flow_.Start(Run());
}

Task<> FirewallListDialog::Run() {
  const auto view = co_await firewall_.Look(Firewall::Asking::kAllowed);
  if (view) {
    ShowView(*view);
  } else {
    ui_->note_label->setText(FirewallErrorText(view.error(), true, translator_));
  }
  ui_->wait_label->hide();
  ui_->refresh_button->setEnabled(true);
}

void FirewallListDialog::ShowView(const FirewallView& view) {
  for (const FirewallRule& rule : view.rules) {
    const QString ports =
        rule.first_port == 0 ? QString() : PortsText(rule.first_port, rule.last_port);
    rows_->appendRow({new QStandardItem(rule.name), new QStandardItem(ports),
                      new QStandardItem(ProtocolText(rule.protocol)),
                      new QStandardItem(Text(rule.is_enabled ? message::kRuleIsEnabled
                                                             : message::kRuleIsDisabled))});
  }
  ui_->rules_view->SizeColumns();
  ui_->note_label->setText(view.kind == FirewallKind::kNone
                               ? Text(message::kNoFirewall)
                               : Text(message::kFirewallIs).arg(FirewallName(view.kind)));
}

QString FirewallListDialog::ProtocolText(int protocol) const {
  const QString word = ProtocolWord(protocol);
  return word.isEmpty()
             ? QStringLiteral("%1 - %2").arg(Text(message::kUnknownProtocol)).arg(protocol)
             : word;
}

}  // namespace quayline
