// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/private_text.h"

#include <QHostAddress>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <array>

namespace quayline {

namespace {

constexpr qsizetype kShortPassword = 3;

QString Mask() { return QStringLiteral("****"); }

// A password as pages, addresses and headers write it.
QStringList WaysToWrite(const Login& login) {
  const QByteArray encoded = QUrl::toPercentEncoding(login.password);
  QString as_form = QString::fromLatin1(encoded);
  as_form.replace(QStringLiteral("%20"), QStringLiteral("+"));
  QString as_json = login.password;
  as_json.replace(QLatin1Char('\\'), QStringLiteral("\\\\"))
      .replace(QLatin1Char('"'), QStringLiteral("\\\""));
  const QByteArray pair = (login.username + QLatin1Char(':') + login.password).toUtf8();
  return {login.password,
          QString::fromLatin1(encoded),
          as_form,
          as_json,
          login.password.toHtmlEscaped(),
          QString::fromLatin1(pair.toBase64()),
          QString::fromLatin1(login.password.toUtf8().toBase64())};
}

bool IsOfHomeNetwork(const QHostAddress& address) {
  static const std::array kHome = [] {
    std::array<QPair<QHostAddress, int>, 9> nets;
    constexpr std::array kTexts = {"10.0.0.0/8",  "172.16.0.0/12",  "192.168.0.0/16",
                                   "127.0.0.0/8", "169.254.0.0/16", "0.0.0.0/8",
                                   "224.0.0.0/3",  // groups and masks
                                   "fc00::/7",    "fe80::/10"};
    std::ranges::transform(kTexts, nets.begin(), [](const char* net) {
      return QHostAddress::parseSubnet(QLatin1String(net));
    });
    return nets;
  }();
  return address.isLoopback() || std::ranges::any_of(kHome, [&address](const auto& net) {
           return address.isInSubnet(net);
         });
}

}  // namespace

QString WithoutLogins(QString text, const QList<Login>& logins) {
  QStringList secrets;
  for (const Login& login : logins) {
    if (!login.password.isEmpty()) {
      secrets += WaysToWrite(login);
    }
  }
  // The longest first: one may be a part of another.
  std::ranges::sort(secrets, std::ranges::greater(), &QString::size);
  for (const QString& secret : std::as_const(secrets)) {
    const QString pattern = QRegularExpression::escape(secret);
    text.replace(QRegularExpression(secret.size() > kShortPassword
                                        ? pattern
                                        : QStringLiteral("(?<!\\w)%1(?!\\w)").arg(pattern),
                                    QRegularExpression::UseUnicodePropertiesOption |
                                        QRegularExpression::CaseInsensitiveOption),
                 Mask());
  }
  return text;
}

QString WithoutOutsideAddresses(const QString& text) {
  static const QRegularExpression kAddress(
      QStringLiteral("(?<![\\w.])\\d{1,3}(?:\\.\\d{1,3}){3}(?![\\w.]*\\w)"
                     "|(?<![\\w:])[0-9A-Fa-f]{0,4}(?::[0-9A-Fa-f]{0,4}){2,7}(?![\\w:])"));
  QString kept;
  qsizetype end = 0;
  for (const QRegularExpressionMatch& match : kAddress.globalMatch(text)) {
    const QHostAddress address(match.captured());
    kept += QStringView(text).sliced(end, match.capturedStart() - end);
    kept += address.isNull() || IsOfHomeNetwork(address) ? match.captured()
                                                         : QStringLiteral("(address)");
    end = match.capturedEnd();
  }
  return kept.append(QStringView(text).sliced(end));
}

QString WithoutHost(QString text, const QString& host) {
  if (host.isEmpty()) {
    return text;
  }
  const QRegularExpression place(
      QStringLiteral("(?<![\\w.-])%1(?![\\w-]|\\.\\w)").arg(QRegularExpression::escape(host)),
      QRegularExpression::CaseInsensitiveOption);
  return text.replace(place, QStringLiteral("(router)"));
}

}  // namespace quayline
