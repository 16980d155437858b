// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include "async/flow.h"
#include "core/app_context.h"
#include "core/entry_firewall.h"
#include "script/job_runner.h"
#include "ui/job/entry_states.h"

namespace quayline {

// Keeps the entries of a job window and the port list in step: shows what the list knows of the
// entries, and puts into the list what the job and the firewall tell of them.
class JobLooks final : public QObject {
  Q_OBJECT

 public:
  // What is referred to outlives it.
  JobLooks(AppContext& context, EntryStates& states);

  // Shows what the port list knows of the entries. Follows its changes from then on.
  void Show();
  // Puts what the job saw into the port list, unless the main window has another router by now.
  void Note(const JobRunner& runner);
  // Looks whether the firewall lets in the entries that lead to this computer, without asking the
  // user for a password. firewallShown() follows.
  void LookAtFirewall();
  void CancelFirewallLook() { firewall_look_.Cancel(); }
  void ShowFirewall(const FirewallAnswer& answer);
  // Ports of the entries that the firewall does not let in, as it was seen last.
  const QList<FirewallPorts>& Blocked() const { return blocked_; }

 Q_SIGNALS:
  void firewallShown();

 private:
  Task<> ReadFirewall();

  AppContext& context_;
  EntryStates& states_;
  QList<FirewallPorts> blocked_;
  Flow firewall_look_;
};

}  // namespace quayline
