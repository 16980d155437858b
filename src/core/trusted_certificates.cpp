// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/trusted_certificates.h"

#include "core/ini_file.h"

namespace quayline {

namespace {

const QString kSection = QStringLiteral("trusted");

// A key ends at the first "=", a section name begins a line with "[": neither occurs in an address
// but for the brackets of IPv6.
QString KeyOf(QString address) {
  address.replace(QLatin1Char('['), QLatin1Char('('));
  return address.replace(QLatin1Char(']'), QLatin1Char(')')).toLower();
}

}  // namespace

TrustedCertificates::TrustedCertificates(QString file_name) : file_name_(std::move(file_name)) {}

TrustedCertificates::Verdict TrustedCertificates::Look(const QString& address,
                                                       const QByteArray& sha256) const {
  const QString known = ReadIniValue(kSection, KeyOf(address), file_name_);
  if (known.isEmpty()) {
    return Verdict::kUnknown;
  }
  const bool is_same = known.compare(Fingerprint(sha256), Qt::CaseInsensitive) == 0;
  return is_same ? Verdict::kTrusted : Verdict::kChanged;
}

bool TrustedCertificates::Trust(const QString& address, const QByteArray& sha256) {
  return WriteIniValue(kSection, KeyOf(address), Fingerprint(sha256), file_name_);
}

QString TrustedCertificates::Fingerprint(const QByteArray& sha256) {
  return QString::fromLatin1(sha256.toHex(':')).toUpper();
}

}  // namespace quayline
