// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/job/job_looks.h"

namespace quayline {

JobLooks::JobLooks(AppContext& context, EntryStates& states) : context_(context), states_(states) {
  connect(&context_.port_list, &QAbstractItemModel::dataChanged, this, &JobLooks::Show);
}

void JobLooks::Show() { states_.SetLooks(context_.port_list.LooksOf(states_.Entries())); }

// An entry that was entered and not looked at afterwards may have changed on the router.
void JobLooks::Note(const JobRunner& runner) {
  if (!runner.IsRouterChosen()) {
    return;
  }
  const JobOutcome& outcome = runner.Outcome();
  const auto looked_at =
      outcome.has_looked ? std::optional(QDateTime::currentDateTime()) : std::nullopt;
  const QList<PortEntry>& rows = runner.Rows();
  const QList<EntryLook> looks = context_.port_list.LooksOf(rows);
  QList<SeenEntry> seen;
  for (qsizetype row = 0; row < rows.size(); ++row) {
    if (looked_at || row < outcome.entries) {
      seen.append({rows.at(row), WithResult(looks.at(row), outcome.results.value(row), looked_at)});
    }
  }
  context_.port_list.NoteLooks(seen);
}

void JobLooks::LookAtFirewall() {
  if (context_.firewall != nullptr) {
    firewall_look_.Start(ReadFirewall());
  }
}

Task<> JobLooks::ReadFirewall() {
  const FirewallAnswer answer = co_await context_.firewall->Look(Firewall::Asking::kNever);
  ShowFirewall(answer);
}

void JobLooks::ShowFirewall(const FirewallAnswer& answer) {
  const FirewallLooks looks = FirewallLooksOf(context_.port_list.SeenOf(states_.Entries()),
                                              context_.adapters.AddressTable(), answer);
  context_.port_list.NoteLooks(looks.seen);
  Show();
  blocked_ = looks.blocked;
  Q_EMIT firewallShown();
}

}  // namespace quayline
