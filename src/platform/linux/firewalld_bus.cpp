// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/firewalld_bus.h"

#include <QDBusArgument>
#include <QDBusMetaType>

#include <unistd.h>

namespace quayline {

// Who asks, as polkit takes it.
struct PolkitSubject {
  QString kind;
  QVariantMap details;
};

static QDBusArgument& operator<<(QDBusArgument& out, const PolkitSubject& subject) {
  out.beginStructure();
  out << subject.kind << subject.details;
  out.endStructure();
  return out;
}

static const QDBusArgument& operator>>(const QDBusArgument& in, PolkitSubject& subject) {
  in.beginStructure();
  in >> subject.kind >> subject.details;
  in.endStructure();
  return in;
}

}  // namespace quayline

Q_DECLARE_METATYPE(quayline::PolkitSubject)

namespace quayline {

namespace {

using namespace std::chrono_literals;
using PolkitDetails = QMap<QString, QString>;

const QString kService = QStringLiteral("org.fedoraproject.FirewallD1");
const QString kMainPath = QStringLiteral("/org/fedoraproject/FirewallD1");
constexpr std::chrono::milliseconds kLongestCall = 5min;  // the user may have to type a password

QString Interface(const QString& name) { return kService + QLatin1Char('.') + name; }

}  // namespace

QDBusConnection& FirewalldBus::Bus() {
  if (!bus_) {
    qDBusRegisterMetaType<PolkitSubject>();
    qDBusRegisterMetaType<PolkitDetails>();
    bus_ = address_.isEmpty() ? QDBusConnection::systemBus()
                              : QDBusConnection::connectToBus(address_, address_);
  }
  return *bus_;
}

Task<BusReply> FirewalldBus::Send(QDBusMessage call) {
  call.setAutoStartService(false);
  return CallBus(Bus(), std::move(call), kLongestCall);
}

Task<BusReply> FirewalldBus::CallAt(QString path, QString interface, QString method,
                                    QVariantList arguments) {
  const QString full = interface.isEmpty() ? kService : Interface(interface);
  QDBusMessage call = QDBusMessage::createMethodCall(kService, path, full, method);
  call.setArguments(arguments);
  call.setInteractiveAuthorizationAllowed(true);
  return Send(std::move(call));
}

Task<BusReply> FirewalldBus::Call(QString interface, QString method, QVariantList arguments) {
  return CallAt(kMainPath, std::move(interface), std::move(method), std::move(arguments));
}

Task<bool> FirewalldBus::IsRunning() {
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
      QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
  call.setArguments({kService});
  const BusReply reply = co_await Send(std::move(call));
  co_return reply && reply->value(0).toBool();
}

// The service asks for a password wherever its policy wants one, so polkit is asked before it.
Task<bool> FirewalldBus::MayReadUnasked() {
  if (geteuid() == 0) {
    co_return true;
  }
  const PolkitSubject us{.kind = QStringLiteral("system-bus-name"),
                         .details = {{QStringLiteral("name"), Bus().baseService()}}};
  constexpr quint32 kNoQuestion = 0;
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.PolicyKit1"),
      QStringLiteral("/org/freedesktop/PolicyKit1/Authority"),
      QStringLiteral("org.freedesktop.PolicyKit1.Authority"), QStringLiteral("CheckAuthorization"));
  call.setArguments({QVariant::fromValue(us), Interface(QStringLiteral("config.info")),
                     QVariant::fromValue(PolkitDetails()), kNoQuestion, QString()});
  const BusReply reply = co_await Send(call);
  if (!reply || reply->value(0).metaType() != QMetaType::fromType<QDBusArgument>()) {
    co_return false;
  }
  const auto result = reply->value(0).value<QDBusArgument>();
  bool is_authorized = false;
  result.beginStructure();
  result >> is_authorized;
  co_return is_authorized;
}

}  // namespace quayline
