// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/helper_firewall.h"

#include "platform/linux/nft_view.h"
#include "platform/linux/ufw_status.h"

namespace quayline {

namespace {

void AddRows(const UfwRule& rule, FirewallView& view) {
  const QString name = rule.comment.isEmpty() ? rule.to : rule.comment;
  for (const FirewallPorts& ports : rule.ports) {
    view.rules.append({.name = name,
                       .first_port = ports.first,
                       .last_port = ports.last,
                       .protocol = ports.protocol});
  }
  if (rule.ports.isEmpty() && rule.protocol > 0) {
    view.rules.append({.name = name, .protocol = rule.protocol});
  }
}

}  // namespace

FirewallView UfwView(const QByteArray& text, const QString& interface) {
  const UfwStatus status = ReadUfwStatus(text);
  if (!status.is_active) {
    return {};
  }
  FirewallView view{.kind = FirewallKind::kUfw,
                    .open_tcp = status.OpenPorts(kTcpNumber, interface),
                    .open_udp = status.OpenPorts(kUdpNumber, interface)};
  for (const UfwRule& rule : status.rules) {
    if (rule.allows) {
      AddRows(rule, view);
    }
  }
  return view;
}

QString HelperFirewall::Word() const {
  return kind_ == FirewallKind::kUfw ? QStringLiteral("ufw") : QStringLiteral("nft");
}

std::optional<FirewallView> HelperFirewall::Read(const QByteArray& output) const {
  if (kind_ == FirewallKind::kUfw) {
    return UfwView(output, interface_);
  }
  const std::optional<NftRuleset> ruleset = NftRuleset::Read(output);
  if (!ruleset) {
    return std::nullopt;
  }
  return ruleset->IsInUse() ? NftView(*ruleset, interface_) : FirewallView();
}

Task<std::expected<FirewallView, FirewallError>> HelperFirewall::Look() const {
  const HelperEnd end = co_await RunFirewallHelper(launch_, {Word(), QStringLiteral("list")}, {});
  FirewallError error = end.result ? FirewallError() : end.result.error();
  error.kind = kind_;
  const std::optional<FirewallView> view = end.result ? Read(end.output) : std::nullopt;
  co_return view ? std::expected<FirewallView, FirewallError>(*view) : std::unexpected(error);
}

Task<FirewallChange> HelperFirewall::Change(QString verb, QList<FirewallPorts> ports,
                                            Firewall::Progress progress) const {
  FirewallChange change{.kind = kind_};
  if (ports.isEmpty()) {
    co_return change;
  }
  QStringList arguments{Word(), verb};
  for (const FirewallPorts& each : ports) {
    arguments.append(PortsArgument(each));
  }
  const auto note = [&change, &progress](qsizetype rule) {
    change.done = rule;
    progress(rule);
  };
  const HelperEnd end = co_await RunFirewallHelper(launch_, std::move(arguments), note);
  change.result = end.result;
  if (end.result) {
    change.done = ports.size();
  } else {
    change.result.error().kind = kind_;
    // nft changes all rules in one transaction, or none.
    change.done = kind_ == FirewallKind::kNftables ? 0 : change.done;
  }
  co_return change;
}

}  // namespace quayline
