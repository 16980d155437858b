// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/certificate_fault.h"

#include <QDateTime>
#include <QHostAddress>

#include <algorithm>

#include "script/web/web_texts.h"

namespace quayline {

namespace {

// A name of a certificate may cover all hosts of a domain: "*.lan".
bool IsNameOf(const QString& name, const QString& host) {
  if (name.startsWith(QLatin1String("*."))) {
    const qsizetype dot = host.indexOf(QLatin1Char('.'));
    return dot > 0 && host.mid(dot).compare(name.mid(1), Qt::CaseInsensitive) == 0;
  }
  const QHostAddress address(host);
  return name.compare(host, Qt::CaseInsensitive) == 0 ||
         (!address.isNull() && QHostAddress(name) == address);
}

}  // namespace

const Message& CertificateFault(const QSslCertificate& certificate, const QString& host) {
  const QDateTime now = QDateTime::currentDateTimeUtc();
  if (now < certificate.effectiveDate() || now > certificate.expiryDate()) {
    return message::kCertificateOutOfDate;
  }
  QStringList names = certificate.subjectAlternativeNames().values();
  if (names.isEmpty()) {
    names = certificate.subjectInfo(QSslCertificate::CommonName);
  }
  const bool is_named =
      std::ranges::any_of(names, [&host](const QString& name) { return IsNameOf(name, host); });
  return is_named ? message::kRefusedCertificate : message::kCertificateOfOther;
}

}  // namespace quayline
