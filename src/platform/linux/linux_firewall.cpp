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
  static const QRegularExpression enabled(
      QStringLiteral("^\\s*ENABLED\\s*=\\s*\"?yes\\b"),
      QRegularExpression::MultilineOption | QRegularExpression::CaseInsensitiveOption);
  QFile file(settings);
  return file.open(QIODevice::ReadOnly) &&
         enabled.match(QString::fromUtf8(file.readAll())).hasMatch();
}

// Of the route to everywhere; empty without one. Its mask tells it from a half of all addresses,
// which is how the route of a VPN begins too.
QString InterfaceOfRouter(const QString& routes) {
  QFile file(routes);
  if (!file.open(QIODevice::ReadOnly)) {
    return {};
  }
  constexpr int kDestination = 1;
  constexpr int kMask = 7;
  for (const QByteArray& line : file.readAll().split('\n')) {
    const QList<QByteArray> columns = line.simplified().split(' ');
    if (columns.value(kDestination) == "00000000" && columns.value(kMask) == "00000000") {
      return QString::fromUtf8(columns.first());
    }
  }
  return {};
}

}  // namespace

QStringList InSystemFolders(const QString& program) {
  QStringList paths;
  for (const char* folder : {"/usr/sbin/", "/sbin/", "/usr/bin/", "/bin/"}) {
    paths.append(QLatin1String(folder) + program);
  }
  return paths;
}

LinuxFirewall::LinuxFirewall(HelperLaunch launch, FirewallPlaces places)
    : launch_(std::move(launch)),
      places_(std::move(places)),
      firewalld_(places_.bus, [this] { return InterfaceOfRouter(places_.routes); }) {}

Task<FirewallKind> LinuxFirewall::Ruling() {
  const bool has_firewalld = co_await firewalld_.IsRunning();
  if (has_firewalld) {
    co_return FirewallKind::kFirewalld;
  }
  // The settings stay when ufw is removed.
  if (AnyExists(places_.ufw_programs) && IsUfwEnabled(places_.ufw_settings)) {
    co_return FirewallKind::kUfw;
  }
  co_return AnyExists(places_.nft_programs) ? FirewallKind::kNftables : FirewallKind::kNone;
}

Task<std::expected<FirewallView, FirewallError>> LinuxFirewall::Look(Asking asking) {
  const FirewallKind kind = co_await Ruling();
  const HelperFirewall firewall(kind, launch_, InterfaceOfRouter(places_.routes));
  if (kind == FirewallKind::kNone) {
    co_return FirewallView();
  }
  if (kind == FirewallKind::kFirewalld) {
    co_return co_await firewalld_.Look(asking);
  }
  if (asking == Asking::kNever && firewall.NeedsPassword()) {
    if (kind == FirewallKind::kNftables && !AnyExists(places_.nft_services)) {
      co_return FirewallView();
    }
    co_return std::unexpected(FirewallError{.fault = FirewallFault::kRefused, .kind = kind});
  }
  co_return co_await firewall.Look();
}

Task<FirewallChange> LinuxFirewall::Add(QList<FirewallPorts> ports, Progress progress) {
  const FirewallKind kind = co_await Ruling();
  if (kind == FirewallKind::kNone) {
    co_return FirewallChange{.result =
                                 std::unexpected(FirewallError{.fault = FirewallFault::kMissing})};
  }
  if (kind == FirewallKind::kFirewalld) {
    co_return co_await firewalld_.Add(std::move(ports), std::move(progress));
  }
  const HelperFirewall firewall(kind, launch_, InterfaceOfRouter(places_.routes));
  co_return co_await firewall.Change(QStringLiteral("add"), std::move(ports), std::move(progress));
}

Task<FirewallChange> LinuxFirewall::Remove(QList<FirewallPorts> ports, Progress progress) {
  const FirewallKind kind = co_await Ruling();
  if (kind == FirewallKind::kNone) {
    co_return FirewallChange{};
  }
  if (kind == FirewallKind::kFirewalld) {
    co_return co_await firewalld_.Remove(std::move(ports), std::move(progress));
  }
  const HelperFirewall firewall(kind, launch_, InterfaceOfRouter(places_.routes));
  co_return co_await firewall.Change(QStringLiteral("remove"), std::move(ports),
                                     std::move(progress));
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
