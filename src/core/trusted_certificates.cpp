// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/trusted_certificates.h"

namespace quayline {

namespace {

const QString kSection = QStringLiteral("trusted");

// A key ends at the first "=", and a section begins with "[". An address has neither, except for
// the brackets of IPv6.
QString KeyOf(QString address) {
  address.replace(QLatin1Char('['), QLatin1Char('('));
  return address.replace(QLatin1Char(']'), QLatin1Char(')')).toLower();
}

}  // namespace

TrustedCertificates::TrustedCertificates(QString file_name) : store_(std::move(file_name)) {}

TrustedCertificates::Verdict TrustedCertificates::Look(const QString& address,
                                                       const QByteArray& sha256) const {
  const QString known = store_.Value(kSection, KeyOf(address));
  if (known.isEmpty()) {
    return Verdict::kUnknown;
  }
  const bool is_same = known.compare(Fingerprint(sha256), Qt::CaseInsensitive) == 0;
  return is_same ? Verdict::kTrusted : Verdict::kChanged;
}

bool TrustedCertificates::Trust(const QString& address, const QByteArray& sha256) {
  return store_.SetValues(
      {{.section = kSection, .key = KeyOf(address), .value = Fingerprint(sha256)}});
}

QString TrustedCertificates::Fingerprint(const QByteArray& sha256) {
  return QString::fromLatin1(sha256.toHex(':')).toUpper();
}

}  // namespace quayline
