// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_desktop.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

// The notification service of a desktop; it notes what it is asked to show.
class Notifications final : public QDBusVirtualObject {
 public:
  QList<QVariantList> shown;

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    shown.append(message.arguments());
    return connection.send(message.createReply(quint32{1}));
  }
};

TEST(LinuxDesktop, ANotificationReachesTheServiceAndWithoutOneNothingHappens) {
  QProcess bus;
  bus.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
  if (!bus.waitForStarted() || !bus.waitForReadyRead(10000)) {
    GTEST_SKIP() << "needs dbus-daemon";
  }
  const QByteArray address = bus.readAllStandardOutput().trimmed();
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);  // read once, when the bus is first used
  LinuxDesktop desktop;
  desktop.ShowNotification(u"Quayline"_s, u"no program listens"_s);

  Notifications service;
  QDBusConnection served =
      QDBusConnection::connectToBus(QString::fromLatin1(address), u"service"_s);
  ASSERT_TRUE(served.registerVirtualObject(u"/org/freedesktop/Notifications"_s, &service));
  ASSERT_TRUE(served.registerService(u"org.freedesktop.Notifications"_s));
  desktop.ShowNotification(u"Quayline"_s, u"<b>Cam&</b>"_s);
  ASSERT_TRUE(testing::RunUntil([&] { return !service.shown.isEmpty(); }));
  ASSERT_EQ(service.shown.size(), 1) << "the first one was sent when there was no service";
  const QVariantList call = service.shown.first();
  EXPECT_EQ(call.size(), 8) << "else the service refuses it";
  EXPECT_EQ(call.value(3), u"Quayline"_s);
  EXPECT_EQ(call.value(4), u"&lt;b&gt;Cam&amp;&lt;/b&gt;"_s) << "the text is markup";
  QDBusConnection::disconnectFromBus(u"service"_s);
  bus.kill();
  bus.waitForFinished();
}

TEST(LinuxDesktop, TheWindowForTheNetworkIsThatOfTheDesktop) {
  const QTemporaryDir programs;
  const QString started = programs.filePath(u"started"_s);
  const auto add = [&](const QString& name) {
    QFile file(programs.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\necho \"$0 $*\" > " + started.toUtf8() + ".new && mv " +
               started.toUtf8() + ".new " + started.toUtf8() + '\n');
    file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
  };
  const QByteArray path = qgetenv("PATH");
  qputenv("PATH", programs.path().toUtf8());
  qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
  LinuxDesktop desktop;
  EXPECT_FALSE(desktop.HasNetworkSettings());
  EXPECT_FALSE(desktop.OpenNetworkSettings());
  add(u"nm-connection-editor"_s);
  add(u"systemsettings"_s);
  EXPECT_TRUE(desktop.HasNetworkSettings()) << "the one that fits any desktop";
  add(u"gnome-control-center"_s);
  qputenv("PATH", programs.path().toUtf8() + ':' + path);  // for the shell's commands
  EXPECT_TRUE(desktop.OpenNetworkSettings());
  ASSERT_TRUE(testing::RunUntil([&] { return QFile::exists(started); }));
  QFile file(started);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_TRUE(file.readAll().endsWith("/gnome-control-center network\n"));
  qputenv("PATH", path);
  qunsetenv("XDG_CURRENT_DESKTOP");
}

}  // namespace
}  // namespace quayline
