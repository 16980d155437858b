// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "net/second_router.h"

#include <QHostAddress>

#include <algorithm>

namespace quayline {

namespace {

constexpr Message kFirst{"%1st", "1st, between \"Possible\" and \"Router:\""};
constexpr Message kSecond{"%1nd", "2nd, between \"Possible\" and \"Router:\""};
constexpr Message kThird{"%1rd", "3rd, between \"Possible\" and \"Router:\""};
constexpr Message kOther{"%1th", "4th, between \"Possible\" and \"Router:\""};

using namespace std::chrono_literals;

const QString kTarget = QStringLiteral("208.67.222.222");
constexpr auto kEchoLimit = 250ms;
constexpr const char* kHomePrefixes[] = {"10.0.0", "10.1.1.", "10.10.", "192.168"};
constexpr int kMostRouters = 5;

bool IsIn(const QString& address, std::initializer_list<const char*> networks) {
  const QHostAddress wanted(address);
  return std::ranges::any_of(networks, [&](const char* network) {
    return wanted.isInSubnet(QHostAddress::parseSubnet(QLatin1String(network)));
  });
}

}  // namespace

Sentence OrdinalText(int number) {
  const QStringList value{QString::number(number)};
  switch (number) {
    case 1:
    case 21:
    case 31:
      return {kFirst, value};
    case 2:
    case 22:
      return {kSecond, value};
    case 3:
    case 23:
      return {kThird, value};
    default:
      return {kOther, value};
  }
}

bool IsHomeRouter(const QString& address) {
  return std::ranges::any_of(
             kHomePrefixes,
             [&](const char* prefix) { return address.startsWith(QLatin1String(prefix)); }) ||
         IsIn(address, {"172.16.0.0/12", "100.64.0.0/10"});
}

bool IsPrivateAddress(const QString& address) {
  return IsIn(address, {"10.0.0.0/8", "172.16.0.0/12", "192.168.0.0/16", "100.64.0.0/10"});
}

QString RouterCount::Shown() const {
  if (count > kMostRouters) {
    return {};
  }
  return count == kMostRouters ? QStringLiteral("5+") : QString::number(std::max(count, 1));
}

bool RouterCount::HasSecondRouter() const { return count > 1 && count <= kMostRouters; }

RouterCount CountRouters(const QStringList& addresses, const QString& outside_address) {
  RouterCount result;
  std::ranges::copy_if(addresses, std::back_inserter(result.routers), IsHomeRouter);
  result.count = static_cast<int>(result.routers.size());
  const QHostAddress outside(outside_address.trimmed());
  if (outside.protocol() != QAbstractSocket::IPv4Protocol ||
      outside == QHostAddress(QHostAddress::AnyIPv4)) {
    return result;
  }
  if (IsPrivateAddress(outside.toString())) {
    result.outside = RouterCount::OutsideAddress::kPrivate;
    result.count = std::max(result.count, 2);
  } else {
    result.outside = RouterCount::OutsideAddress::kPublic;
    result.count = std::min(result.count, 1);
  }
  return result;
}

Task<> SecondRouterSearch::Run() {
  RouterTrace trace;
  for (const Adapter& adapter : adapters_.List()) {
    if (!adapter.gateway.isEmpty() && adapter.gateway != Adapter().gateway) {
      trace.addresses.append(adapter.gateway);
    }
  }
  bool has_answer = false;
  for (int ttl = 1; ttl <= kSteps && !trace.is_forbidden; ++ttl) {
    Q_EMIT progressed(ttl);
    const EchoReply reply = co_await echoes_.Send(kTarget, ttl, kEchoLimit);
    trace.is_forbidden = reply.kind == EchoReply::Kind::kForbidden;
    if (reply.IsAnswer()) {
      has_answer = true;
      trace.addresses.append(reply.address);
    } else {
      ++ttl;  // after a hop that does not answer the next one is passed over: it saves time
    }
  }
  trace.is_silent = !has_answer && trace.addresses.isEmpty();
  trace.addresses.removeDuplicates();
  Q_EMIT ended(trace);
}

}  // namespace quayline
