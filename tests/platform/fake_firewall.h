// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include "async/wait.h"
#include "platform/firewall.h"

namespace quayline::testing {

// A firewall with the rules that a test gives it. It fails with `error`, before the rule `failing`;
// `hangs` lets it wait for a password for ever.
class FakeFirewall final : public Firewall {
 public:
  FirewallView view{.kind = FirewallKind::kUfw, .open_tcp = {}, .open_udp = {}};
  std::optional<FirewallError> error;
  qsizetype failing = 0;
  bool hangs = false;
  QList<FirewallPorts> added;
  QList<FirewallPorts> removed;
  int looks = 0;

  Task<std::expected<FirewallView, FirewallError>> Look(Asking asking) override {
    ++looks;
    co_await Sleep(std::chrono::milliseconds(1));
    if (error && (asking == Asking::kNever || failing == 0)) {
      co_return std::unexpected(*error);
    }
    co_return view;
  }
  Task<FirewallChange> Add(QList<FirewallPorts> ports, Progress progress) override {
    return Change(std::move(ports), std::move(progress), added);
  }
  Task<FirewallChange> Remove(QList<FirewallPorts> ports, Progress progress) override {
    return Change(std::move(ports), std::move(progress), removed);
  }
  bool OpenSettings() override { return false; }

 private:
  Task<FirewallChange> Change(QList<FirewallPorts> ports, Progress progress,
                              QList<FirewallPorts>& changed) {
    FirewallChange change{.kind = view.kind};
    for (const FirewallPorts& each : ports) {
      if (error && change.done == failing) {
        change.result = std::unexpected(*error);
        co_return change;
      }
      progress(change.done);
      co_await Until([this] { return !hangs; });
      changed.append(each);
      ++change.done;
    }
    co_return change;
  }
};

}  // namespace quayline::testing
