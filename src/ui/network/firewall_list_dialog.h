// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QTimer>

#include <memory>

#include "async/flow.h"
#include "i18n/translator.h"
#include "platform/firewall.h"

class QStandardItemModel;

namespace Ui {
class FirewallListDialog;
}

namespace quayline {

// All rules of the firewall of this computer that let something in, in the firewall's order. It
// reads them soon after it is shown. Deletes itself when it is closed.
class FirewallListDialog final : public QDialog {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  FirewallListDialog(Firewall& firewall, const Translator& translator, QWidget* parent);
  ~FirewallListDialog() override;

 private:
  void Begin();
  Task<> Run();
  void ShowView(const FirewallView& view);
  QString ProtocolText(int protocol) const;
  QString Text(const Message& message) const { return translator_.Text(message); }

  Firewall& firewall_;
  const Translator& translator_;
  std::unique_ptr<Ui::FirewallListDialog> ui_;
  QStandardItemModel* rows_;
  QTimer start_timer_;
  Flow flow_;
};

}  // namespace quayline
