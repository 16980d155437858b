// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace quayline {

// The addresses of the maker's web server. One value, replaced as a whole by the demo and tests.
struct MakerSite {
  QString base = QStringLiteral("https://quayline.example");
  QString test_site;  // that the user named for testing ports; empty: the maker's

  // The default address is a reserved one: there is no site yet, and links to it lead nowhere.
  bool Exists() const {
    return !QUrl(base).host().endsWith(QLatin1String(".example"), Qt::CaseInsensitive);
  }

  // The site that tests ports. Null if no site is known.
  QUrl TestSite() const {
    return !test_site.isEmpty() ? QUrl(test_site) : Exists() ? QUrl(base) : QUrl();
  }
  QUrl PortTest(bool udp) const {
    QUrl url = TestSite();
    url.setPath(udp ? QStringLiteral("/port_test_udp.php") : QStringLiteral("/port_test.php"));
    return url;
  }
  QUrl PortTestHelp() const { return Page("/common-problems-fixes-port-forwarding"); }

  QUrl Page(const char* path) const { return QUrl(base + QString::fromLatin1(path)); }

  QUrl StaticAddressHelp() const { return Page("/static-ip-what-it-and-do-i-need-it"); }

  QUrl Website() const { return Page("/"); }
  QUrl Forums() const { return Page("/forums"); }
  QUrl Help() const { return Page("/help"); }
  QUrl DefaultLogins() const { return Page("/default-logins"); }
  QUrl RouterRequest() const { return Page("/router-request"); }
  QUrl WrongPicture() const { return Page("/wrong-picture"); }
  QUrl ForwardingFails() const { return Page("/forwarding-fails"); }
  QUrl Screenshots() const { return Page("/router-screenshots"); }
  QUrl ForwardingGuides() const { return Page("/port-forwarding"); }
  QUrl TriggeringGuides() const { return Page("/port-triggering"); }
  QUrl WirelessGuides() const { return Page("/wireless-setup"); }
  QUrl Tool(int number) const { return QUrl(base + QStringLiteral("/tools/%1").arg(number)); }
  // `picture_path` is the router's picture path with "/" separators.
  QUrl Picture(const QString& picture_path) const {
    QUrl url(base);
    url.setPath(QStringLiteral("/files") +
                (picture_path.startsWith(QLatin1Char('/')) ? QString() : QStringLiteral("/")) +
                picture_path);
    return url;
  }
};

}  // namespace quayline
