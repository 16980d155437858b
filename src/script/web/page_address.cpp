// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/page_address.h"

#include <QHostAddress>
#include <QRegularExpression>

namespace quayline {

QString ShownUrl(const QUrl& url) { return url.toString(QUrl::RemoveUserInfo); }

// A name that ends in a number can only be an address. The engine says nothing at all of a load
// from an invalid one, such as 192.168.1.999.
bool IsHost(const QString& host) {
  static const QRegularExpression numeric(QStringLiteral("(^|\\.)([0-9]+|0[xX][0-9a-fA-F]*)\\.?$"));
  return !host.isEmpty() && !host.contains(QLatin1Char('%')) &&
         (!numeric.match(host).hasMatch() || !QHostAddress(host).isNull());
}

// Whatever may have been meant as the login is left out.
QString WithoutLogin(const QString& address) {
  static const QRegularExpression login(QStringLiteral("//.*@"),
                                        QRegularExpression::DotMatchesEverythingOption);
  return QString(address).replace(login, QStringLiteral("//"));
}

}  // namespace quayline
