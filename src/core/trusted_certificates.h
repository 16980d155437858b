// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace quayline {

// The certificates that the user took on trust, one for each router address. Most routers that
// speak https show one that they signed themselves. Kept in "certificates.ini" in the program's
// folder, section `trusted`: the address with its port, and the SHA-256 fingerprint in hex.
class TrustedCertificates final {
 public:
  enum class Verdict {
    kUnknown,  // nothing is known of this address: ask the user
    kTrusted,  // the very certificate that the user took
    kChanged,  // another one than the user took: ask, and say so
  };

  explicit TrustedCertificates(QString file_name);

  // `address` is the host, ":" and the port.
  Verdict Look(const QString& address, const QByteArray& sha256) const;
  // False when the file could not be written: the user is then asked again the next time.
  bool Trust(const QString& address, const QByteArray& sha256);

  // As people compare it: pairs of capital hex digits joined by ":".
  static QString Fingerprint(const QByteArray& sha256);

 private:
  QString file_name_;
};

}  // namespace quayline
