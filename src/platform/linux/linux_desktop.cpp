// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "platform/linux/linux_desktop.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <utility>

namespace quayline {

namespace {

// Without an address libdbus would start a bus of its own, and wait for it.
bool HasSessionBus() {
  const QString runtime_folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
         (!runtime_folder.isEmpty() && QFileInfo::exists(runtime_folder + QStringLiteral("/bus")));
}

// Windows for network connections, the best of each desktop first.
struct NetworkTool {
  const char* desktop;  // a name in XDG_CURRENT_DESKTOP; empty for any
  const char* program;
  const char* page;  // its argument, or empty
};

constexpr NetworkTool kNetworkTools[] = {
    {"GNOME", "gnome-control-center", "network"},
    {"Unity", "gnome-control-center", "network"},
    {"KDE", "systemsettings", "kcm_networkmanagement"},
    {"KDE", "systemsettings5", "kcm_networkmanagement"},
    {"X-Cinnamon", "cinnamon-settings", "network"},
    {"", "nm-connection-editor", ""},
};

// The program and its argument; empty if no program is known.
QStringList FindNetworkTool() {
  const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'));
  for (const NetworkTool& tool : kNetworkTools) {
    const QString desktop = QString::fromLatin1(tool.desktop);
    const QString program = desktop.isEmpty() || desktops.contains(desktop)
                                ? QStandardPaths::findExecutable(QLatin1String(tool.program))
                                : QString();
    if (!program.isEmpty()) {
      const QString page = QString::fromLatin1(tool.page);
      return page.isEmpty() ? QStringList{program} : QStringList{program, page};
    }
  }
  return {};
}

}  // namespace

bool LinuxDesktop::HasNetworkSettings() const { return !FindNetworkTool().isEmpty(); }

bool LinuxDesktop::OpenNetworkSettings() {
  const QStringList tool = FindNetworkTool();
  return !tool.isEmpty() && QProcess::startDetached(tool.first(), tool.sliced(1));
}

bool LinuxDesktop::OpenInBrowser(const QUrl& page) {
  // Addresses come out of databases and settings: what is not a web page could start any program.
  const bool is_web_page =
      page.scheme() == QStringLiteral("http") || page.scheme() == QStringLiteral("https");
  return is_web_page && !page.host().isEmpty() && QDesktopServices::openUrl(page);
}

bool LinuxDesktop::OpenFile(const QString& file) {
  return QFileInfo(file).isFile() && QDesktopServices::openUrl(QUrl::fromLocalFile(file));
}

QString LinuxDesktop::UpdateCommand() const {
  constexpr std::pair<const char*, const char*> kManagers[] = {
      {"apt-get", "sudo apt-get update && sudo apt-get install --only-upgrade quayline"},
      {"dnf", "sudo dnf upgrade quayline"},
      {"zypper", "sudo zypper update quayline"},
      {"pacman", "sudo pacman -Syu"},
      {"apk", "sudo apk add --upgrade quayline"},
      {"xbps-install", "sudo xbps-install -Su quayline"},
      {"emerge", "sudo emerge --update quayline"},
  };
  for (const auto& [manager, command] : kManagers) {
    if (!QStandardPaths::findExecutable(QLatin1String(manager)).isEmpty()) {
      return QLatin1String(command);
    }
  }
  return {};
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
