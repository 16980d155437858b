// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_desktop.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QFileInfo>

namespace quayline {

namespace {

// Without an address libdbus would start a bus of its own, and wait for it.
bool HasSessionBus() {
  const QString runtime_folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
         (!runtime_folder.isEmpty() && QFileInfo::exists(runtime_folder + QStringLiteral("/bus")));
}

}  // namespace

bool LinuxDesktop::OpenInBrowser(const QUrl& page) {
  // Addresses come out of databases and settings: what is not a web page could start any program.
  const bool is_web_page =
      page.scheme() == QStringLiteral("http") || page.scheme() == QStringLiteral("https");
  return is_web_page && !page.host().isEmpty() && QDesktopServices::openUrl(page);
}

// Where no service answers, the call is lost.
void LinuxDesktop::ShowNotification(const QString& title, const QString& text) {
  if (!HasSessionBus()) {
    return;
  }
  QDBusMessage call = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.Notifications"),
      QStringLiteral("/org/freedesktop/Notifications"),
      QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
  constexpr quint32 kNew = 0;
  constexpr qint32 kTimeOfDesktop = -1;
  // The text is markup for services that know any.
  call << QStringLiteral("Quayline") << kNew << QStringLiteral("quayline") << title
       << text.toHtmlEscaped() << QStringList()
       << QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("quayline")}}
       << kTimeOfDesktop;
  QDBusConnection::sessionBus().send(call);
}

}  // namespace quayline
