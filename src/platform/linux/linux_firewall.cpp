// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_firewall.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>

namespace quayline {

namespace {

bool AnyExists(const QStringList& files) {
  return std::ranges::any_of(files, [](const QString& file) { return QFileInfo::exists(file); });
}

bool IsUfwEnabled(const QString& settings) {
  static const QRegularExpression enabled(QStringLiteral("^\\s*ENABLED\\s*=\\s*\"?yes\\b"),
                                          QRegularExpression::MultilineOption |
                                              QRegularExpression::CaseInsensitiveOption);
  QFile file(settings);
  return file.open(QIODevice::ReadOnly) &&
         enabled.match(QString::fromUtf8(file.readAll())).hasMatch();
}

}  // namespace

FirewallKind LinuxFirewall::Ruling() const {
  if (IsUfwEnabled(places_.ufw_settings)) {
    return FirewallKind::kUfw;
  }
  return AnyExists(places_.nft_programs) ? FirewallKind::kNftables : FirewallKind::kNone;
}

Task<std::expected<FirewallView, FirewallError>> LinuxFirewall::Look(Asking asking) {
  const FirewallKind kind = Ruling();
  const HelperFirewall firewall(kind, launch_);
  if (kind == FirewallKind::kNone) {
    co_return FirewallView();
  }
  if (asking == Asking::kNever && firewall.NeedsPassword()) {
    if (kind == FirewallKind::kNftables && !AnyExists(places_.nft_services)) {
      co_return FirewallView();
    }
    co_return std::unexpected(FirewallError{.fault = FirewallFault::kRefused, .kind = kind});
  }
  co_return co_await firewall.Look();
}

Task<FirewallChange> LinuxFirewall::Change(QString verb, QList<FirewallPorts> ports,
                                           Progress progress) {
  const FirewallKind kind = Ruling();
  if (kind == FirewallKind::kNone) {
    co_return FirewallChange{
        .result = std::unexpected(FirewallError{.fault = FirewallFault::kMissing})};
  }
  const HelperFirewall firewall(kind, launch_);
  co_return co_await firewall.Change(std::move(verb), std::move(ports), std::move(progress));
}

Task<FirewallChange> LinuxFirewall::Add(QList<FirewallPorts> ports, Progress progress) {
  return Change(QStringLiteral("add"), std::move(ports), std::move(progress));
}

Task<FirewallChange> LinuxFirewall::Remove(QList<FirewallPorts> ports, Progress progress) {
  return Change(QStringLiteral("remove"), std::move(ports), std::move(progress));
}

bool LinuxFirewall::OpenSettings() {
  const QList<QStringList> programs{
      {QStringLiteral("firewall-config")},
      {QStringLiteral("gufw")},
      {QStringLiteral("systemsettings"), QStringLiteral("kcm_firewall")},
      {QStringLiteral("systemsettings5"), QStringLiteral("kcm_firewall")},
      {QStringLiteral("yast2"), QStringLiteral("firewall")}};
  return std::ranges::any_of(programs, [](const QStringList& program) {
    const QString path = QStandardPaths::findExecutable(program.first());
    return !path.isEmpty() && QProcess::startDetached(path, program.mid(1));
  });
}

}  // namespace quayline
