// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

// Asks the router by UPnP or NAT-PMP to open and close ports, for the program, in a process of its
// own: the libraries wait for their answers, and parse what any device of the network sends.
//
// Reads one JSON object from standard input:
//
//   {"do": "find" | "open" | "check" | "close", "router": "192.168.1.1", "seconds": 3600,
//    "rules": [{"protocol": "tcp" | "udp", "port": 80, "to": "192.168.1.5", "name": "Web"}]}
//
// and writes one: {"speaks": "upnp" | "nat-pmp" | "", "outside": "203.0.113.2", "results":
// ["open" | "for-good" | "shorter" | "missing" | "taken" | "refused" | "unknown", ...]}, a result a
// rule. Ends with 0, or with 2 if the input is not understood.

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <optional>

#include "mapper/mapping_router.h"

namespace quayline::mapper {
namespace {

constexpr int kUsage = 2;
constexpr qint64 kMaxInput = qint64{1} << 20;
constexpr qsizetype kMaxRules = 2000;

struct Request {
  QString verb;
  QHostAddress router;
  QList<Mapping> mappings;
};

std::optional<Request> ReadRequest(const QByteArray& bytes) {
  const QJsonObject json = QJsonDocument::fromJson(bytes).object();
  Request request{.verb = json[QStringLiteral("do")].toString(),
                  .router = QHostAddress(json[QStringLiteral("router")].toString()),
                  .mappings = {}};
  const QJsonArray rules = json[QStringLiteral("rules")].toArray();
  if (request.router.protocol() != QAbstractSocket::IPv4Protocol || rules.size() > kMaxRules) {
    return std::nullopt;
  }
  const auto seconds = static_cast<quint32>(json[QStringLiteral("seconds")].toInteger());
  for (const QJsonValue& each : rules) {
    const QJsonObject rule = each.toObject();
    const qint64 port = rule[QStringLiteral("port")].toInteger();
    const QHostAddress to(rule[QStringLiteral("to")].toString());
    if (port < 1 || port > 65535 || to.protocol() != QAbstractSocket::IPv4Protocol) {
      return std::nullopt;
    }
    request.mappings.append({.udp = rule[QStringLiteral("protocol")].toString() == u"udp",
                             .port = static_cast<quint16>(port),
                             .to = to,
                             .name = rule[QStringLiteral("name")].toString(),
                             .seconds = seconds});
  }
  return request;
}

QString StateWord(MappingState state) {
  switch (state) {
    case MappingState::kOpen:
      return QStringLiteral("open");
    case MappingState::kForGood:
      return QStringLiteral("for-good");
    case MappingState::kShorter:
      return QStringLiteral("shorter");
    case MappingState::kMissing:
      return QStringLiteral("missing");
    case MappingState::kTaken:
      return QStringLiteral("taken");
    case MappingState::kRefused:
      return QStringLiteral("refused");
    case MappingState::kUnknown:
      break;
  }
  return QStringLiteral("unknown");
}

QJsonArray CarryOut(MappingRouter& router, const Request& request) {
  QJsonArray results;
  for (const Mapping& mapping : request.mappings) {
    const MappingState state = request.verb == u"open"    ? router.Open(mapping)
                               : request.verb == u"close" ? router.Close(mapping)
                                                          : router.Check(mapping);
    results.append(StateWord(state));
  }
  return results;
}

int Run() {
  QFile input;
  if (!input.open(stdin, QIODevice::ReadOnly)) {
    return kUsage;
  }
  const std::optional<Request> request = ReadRequest(input.read(kMaxInput));
  if (!request) {
    return kUsage;
  }
  QJsonObject answer{{QStringLiteral("speaks"), QString()}};
  // UPnP first: it can be asked which rules there are.
  std::unique_ptr<MappingRouter> router = FindUpnp(request->router);
  if (!router) {
    router = FindNatPmp(request->router);
  }
  if (router) {
    answer = {{QStringLiteral("speaks"), router->Protocol()},
              {QStringLiteral("outside"), router->OutsideAddress()},
              {QStringLiteral("results"), CarryOut(*router, *request)}};
  }
  const QByteArray bytes = QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n';
  std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
  return 0;
}

}  // namespace
}  // namespace quayline::mapper

int main() { return quayline::mapper::Run(); }
