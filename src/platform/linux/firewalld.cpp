// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/firewalld.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

#include <algorithm>

namespace quayline {

namespace {
// "8080-8090", "tcp" of each struct in an array of them.
QList<std::pair<QString, QString>> PairsOf(const QVariant& value) {
  QList<std::pair<QString, QString>> pairs;
  if (value.metaType() != QMetaType::fromType<QDBusArgument>()) {
    return pairs;
  }
  const auto argument = value.value<QDBusArgument>();
  argument.beginArray();
  while (!argument.atEnd()) {
    std::pair<QString, QString> pair;
    argument.beginStructure();
    argument >> pair.first >> pair.second;
    argument.endStructure();
    pairs.append(pair);
  }
  argument.endArray();
  return pairs;
}

QList<FirewallRule> RulesOf(const QVariantMap& settings, const QString& name) {
  QList<FirewallRule> rules;
  for (const auto& [ports, protocol] : PairsOf(settings[QStringLiteral("ports")])) {
    const int first = ports.section(QLatin1Char('-'), 0, 0).toInt();
    rules.append({.name = name.isEmpty() ? ports + QLatin1Char('/') + protocol : name,
                  .first_port = first,
                  .last_port = std::max(first, ports.section(QLatin1Char('-'), -1).toInt()),
                  .protocol = ProtocolNumber(protocol)});
  }
  for (const QString& protocol : settings[QStringLiteral("protocols")].toStringList()) {
    rules.append({.name = name.isEmpty() ? protocol : name, .protocol = ProtocolNumber(protocol)});
  }
  return rules;
}

FirewallError ErrorOf(const QDBusError& error) {
  const QString name = error.name();
  const bool is_refused = name.endsWith(QLatin1String("NotAuthorizedException")) ||
                          name.endsWith(QLatin1String("InteractiveAuthorizationRequired")) ||
                          error.type() == QDBusError::AccessDenied;
  const bool is_missing =
      error.type() == QDBusError::ServiceUnknown || error.type() == QDBusError::Disconnected;
  return {.fault = is_refused   ? FirewallFault::kRefused
                   : is_missing ? FirewallFault::kMissing
                                : FirewallFault::kFailed,
          .kind = FirewallKind::kFirewalld,
          .text = is_refused   ? QString()
                  : is_missing ? QStringLiteral("firewalld")
                               : error.message()};
}

FirewallChange Failure(const QDBusError& error) {
  return {.kind = FirewallKind::kFirewalld, .result = std::unexpected(ErrorOf(error))};
}

}  // namespace

Firewalld::Firewalld(QString bus_address, std::function<QString()> interface)
    : bus_(std::move(bus_address)), interface_(std::move(interface)) {}

Task<std::expected<QString, QDBusError>> Firewalld::Zone() {
  if (const QString interface = interface_(); !interface.isEmpty()) {
    const BusReply of_interface = co_await bus_.Call(
        QStringLiteral("zone"), QStringLiteral("getZoneOfInterface"), {interface});
    if (of_interface && !of_interface->value(0).toString().isEmpty()) {
      co_return of_interface->value(0).toString();
    }
  }
  const BusReply standard = co_await bus_.Call({}, QStringLiteral("getDefaultZone"), {});
  if (!standard) {
    co_return std::unexpected(standard.error());
  }
  co_return standard->value(0).toString();
}

Task<QList<FirewallRule>> Firewalld::RulesOfService(QString service) {
  const BusReply reply = co_await bus_.Call({}, QStringLiteral("getServiceSettings2"), {service});
  if (!reply) {
    co_return QList<FirewallRule>();
  }
  const auto settings = qdbus_cast<QVariantMap>(reply->value(0));
  const QString name = settings[QStringLiteral("short")].toString();
  co_return RulesOf(settings, name.isEmpty() ? service : name);
}

Task<std::expected<FirewalldZone, QDBusError>> Firewalld::Settings(QString zone) {
  const BusReply reply =
      co_await bus_.Call(QStringLiteral("zone"), QStringLiteral("getZoneSettings2"), {zone});
  if (!reply) {
    co_return std::unexpected(reply.error());
  }
  const auto settings = qdbus_cast<QVariantMap>(reply->value(0));
  FirewalldZone read{.target = settings[QStringLiteral("target")].toString(),
                     .rich_rules = settings[QStringLiteral("rules_str")].toStringList(),
                     .ports_and_services = RulesOf(settings, {})};
  for (const QString& service : settings[QStringLiteral("services")].toStringList()) {
    const QList<FirewallRule> of_service = co_await RulesOfService(service);
    read.ports_and_services += of_service;
  }
  for (const QString& service : ServicesOfRichRules(read.rich_rules)) {
    const QList<FirewallRule> of_service = co_await RulesOfService(service);
    read.services.insert(service, of_service);
  }
  co_return read;
}

Task<std::expected<QStringList, QDBusError>> Firewalld::RichRules(QString zone) {
  const BusReply reply =
      co_await bus_.Call(QStringLiteral("zone"), QStringLiteral("getRichRules"), {zone});
  if (!reply) {
    co_return std::unexpected(reply.error());
  }
  co_return reply->value(0).toStringList();
}

Task<QStringList> Firewalld::OwnRulesElsewhere(QString but_not_of) {
  QStringList rules;
  const BusReply zones = co_await bus_.Call(QStringLiteral("zone"), QStringLiteral("getZones"), {});
  for (const QString& zone : zones ? zones->value(0).toStringList() : QStringList()) {
    const auto of_zone = co_await RichRules(zone);
    if (zone != but_not_of && of_zone) {
      rules += *of_zone;
    }
  }
  rules.removeIf([](const QString& rule) { return !PortsOfOwnRichRule(rule); });
  co_return rules;
}

Task<std::expected<FirewallView, FirewallError>> Firewalld::Look(Firewall::Asking asking) {
  if (asking == Firewall::Asking::kNever) {
    const bool may_read = co_await bus_.MayReadUnasked();
    if (!may_read) {
      co_return std::unexpected(
          FirewallError{.fault = FirewallFault::kRefused, .kind = FirewallKind::kFirewalld});
    }
  }
  const auto zone = co_await Zone();
  if (!zone) {
    co_return std::unexpected(ErrorOf(zone.error()));
  }
  const auto settings = co_await Settings(*zone);
  if (!settings) {
    co_return std::unexpected(ErrorOf(settings.error()));
  }
  FirewallView view = FirewalldView(*settings);
  // They open nothing here, but are the program's, from another network.
  const QStringList elsewhere = co_await OwnRulesElsewhere(*zone);
  view.rules += FirewalldView({.rich_rules = elsewhere}).rules;
  co_return view;
}

Task<Firewalld::Done> Firewalld::SetKept(QString zone, QStringList before, QStringList after) {
  const BusReply path =
      co_await bus_.CallAt(QLatin1String(FirewalldBus::kConfigPath), QStringLiteral("config"),
                           QStringLiteral("getZoneByName"), {zone});
  if (!path) {
    co_return std::unexpected(path.error());
  }
  const QString zone_path = path->value(0).value<QDBusObjectPath>().path();
  const BusReply settings = co_await bus_.CallAt(zone_path, QStringLiteral("config.zone"),
                                                 QStringLiteral("getSettings2"), {});
  if (!settings) {
    co_return std::unexpected(settings.error());
  }
  // What is kept may differ from what rules now: only the program's rules are taken over.
  auto kept = qdbus_cast<QVariantMap>(settings->value(0));
  QStringList rules = kept[QStringLiteral("rules_str")].toStringList();
  rules.removeIf([&](const QString& rule) {
    return before.contains(rule) && !after.contains(rule) && PortsOfOwnRichRule(rule);
  });
  for (const QString& rule : after) {
    if (PortsOfOwnRichRule(rule) && !rules.contains(rule)) {
      rules.append(rule);
    }
  }
  kept[QStringLiteral("rules_str")] = rules;
  const BusReply changed = co_await bus_.CallAt(zone_path, QStringLiteral("config.zone"),
                                                QStringLiteral("update2"), {kept});
  co_return changed ? Done() : Done(std::unexpected(changed.error()));
}

Task<Firewalld::Done> Firewalld::SetRichRules(QString zone, QStringList before, QStringList after) {
  const auto set_now = [this, zone](const QStringList& rules) {
    return bus_.Call(QStringLiteral("zone"), QStringLiteral("setZoneSettings2"),
                     {zone, QVariantMap{{QStringLiteral("rules_str"), rules}}});
  };
  const BusReply now = co_await set_now(after);
  const Done kept = now ? co_await SetKept(zone, before, after) : Done();
  if (now && kept) {
    co_return Done();
  }
  co_await set_now(before);
  co_return std::unexpected(now ? kept.error() : now.error());
}

Task<FirewallChange> Firewalld::Add(QList<FirewallPorts> ports, Firewall::Progress progress) {
  const auto zone = co_await Zone();
  if (!zone) {
    co_return Failure(zone.error());
  }
  const auto before = co_await RichRules(*zone);
  if (!before) {
    co_return Failure(before.error());
  }
  QStringList after = *before;
  for (qsizetype rule = 0; rule < ports.size(); ++rule) {
    progress(rule);
    if (const QString text = OwnRichRule(ports[rule]); !after.contains(text)) {
      after.append(text);
    }
  }
  const Done done = co_await SetRichRules(*zone, *before, after);
  co_return done ? FirewallChange{.kind = FirewallKind::kFirewalld, .done = ports.size()}
                 : Failure(done.error());
}

Task<FirewallChange> Firewalld::Remove(QList<FirewallPorts> ports, Firewall::Progress progress) {
  const BusReply zones = co_await bus_.Call(QStringLiteral("zone"), QStringLiteral("getZones"), {});
  if (!zones) {
    co_return Failure(zones.error());
  }
  for (qsizetype rule = 0; rule < ports.size(); ++rule) {
    progress(rule);
  }
  // All zones are read before one is changed.
  QMap<QString, QStringList> rules;
  for (const QString& zone : zones->value(0).toStringList()) {
    const auto of_zone = co_await RichRules(zone);
    if (!of_zone) {
      co_return Failure(of_zone.error());
    }
    rules[zone] = *of_zone;
  }
  for (const auto& [zone, before] : rules.asKeyValueRange()) {
    QStringList after = before;
    const auto removed = after.removeIf([&](const QString& rule) {
      const std::optional<FirewallPorts> own = PortsOfOwnRichRule(rule);
      return own && ports.contains(*own);
    });
    const Done done = removed > 0 ? co_await SetRichRules(zone, before, after) : Done();
    if (!done) {
      co_return Failure(done.error());
    }
  }
  co_return FirewallChange{.kind = FirewallKind::kFirewalld, .done = ports.size()};
}

}  // namespace quayline
