// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/network_manager_bus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>

#include "platform/linux/bus_call.h"

namespace quayline {

namespace {

using namespace std::chrono_literals;

const QString kService = QStringLiteral("org.freedesktop.NetworkManager");
const QString kPropertyInterface = QStringLiteral("org.freedesktop.DBus.Properties");
constexpr std::chrono::milliseconds kLongestCall = 2min;  // the user may have to type a password

}  // namespace

QDBusConnection& NetworkManagerBus::Bus() {
  if (!bus_) {
    qDBusRegisterMetaType<NetworkProfile>();
    qDBusRegisterMetaType<QList<QVariantMap>>();
    qDBusRegisterMetaType<QList<quint32>>();
    bus_ = address_.isEmpty() ? QDBusConnection::systemBus()
                              : QDBusConnection::connectToBus(address_, address_);
    bus_->connect(kService, QString(), kPropertyInterface, QStringLiteral("PropertiesChanged"),
                  this, SLOT(NoteChange()));
  }
  return *bus_;
}

void NetworkManagerBus::NoteChange() {
  ++changes_;
  Q_EMIT changed();
}

Task<BusReply> NetworkManagerBus::Send(QString path, QString full_interface, QString method,
                                       QVariantList arguments) {
  QDBusMessage call = QDBusMessage::createMethodCall(kService, path, full_interface, method);
  call.setArguments(arguments);
  call.setInteractiveAuthorizationAllowed(true);
  BusReply reply = co_await CallBus(Bus(), call, kLongestCall);
  co_return reply;
}

Task<BusReply> NetworkManagerBus::Call(QString path, QString interface, QString method,
                                       QVariantList arguments) {
  const QString full = interface.isEmpty() ? kService : kService + u'.' + interface;
  BusReply reply = co_await Send(path, full, method, arguments);
  co_return reply;
}

Task<QVariantMap> NetworkManagerBus::Properties(QString path, QString interface) {
  const BusReply reply = co_await Send(path, kPropertyInterface, QStringLiteral("GetAll"),
                                       {kService + u'.' + interface});
  co_return reply ? qdbus_cast<QVariantMap>(reply->value(0)) : QVariantMap();
}

}  // namespace quayline
