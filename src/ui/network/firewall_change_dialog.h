// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QTimer>

#include <memory>
#include <optional>

#include "i18n/translator.h"
#include "net/firewall_exceptions.h"

namespace Ui {
class FirewallChangeDialog;
}

namespace quayline {

// Adds ports to the firewall of this computer, or removes all that the program added. It begins by
// itself soon after it is shown, and stays open with the result. Closing it changes no further
// rule. Deletes itself when it is closed.
class FirewallChangeDialog final : public QDialog {
  Q_OBJECT

 public:
  // Without `added` it removes. What is referred to outlives it.
  FirewallChangeDialog(Firewall& firewall, std::optional<QList<FirewallPorts>> added,
                       const Translator& translator, QWidget* parent);
  ~FirewallChangeDialog() override;

 Q_SIGNALS:
  // Everything was done.
  void succeeded();

 private:
  void Begin();
  void ShowProgress(qint64 port, qint64 ports, const QString& rule_name);
  void ShowEnd(const FirewallChangeEnd& end);
  void Stop();
  void SetWorking(bool working);
  QString NoteOf(const FirewallChangeEnd& end) const;
  QString Text(const Message& message) const { return translator_.Text(message); }

  const std::optional<QList<FirewallPorts>> added_;
  const Translator& translator_;
  FirewallExceptions exceptions_;
  std::unique_ptr<Ui::FirewallChangeDialog> ui_;
  QTimer start_timer_;
};

}  // namespace quayline
