// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include "core/ini_store.h"

namespace quayline {

// The certificates that the user trusts, one for each router address. Most routers that speak https
// show one that they signed themselves. Stored in "certificates.ini" in the program's folder,
// section `trusted`: the address with its port, and the SHA-256 fingerprint in hex. An answer that
// could not be stored holds until the program ends.
class TrustedCertificates final {
 public:
  enum class Verdict {
    kUnknown,  // nothing is known of this address: ask the user
    kTrusted,  // the certificate that the user trusts
    kChanged,  // another one than the user trusts: ask, and say so
  };

  explicit TrustedCertificates(QString file_name);

  // `address` is the host, ":" and the port.
  Verdict Look(const QString& address, const QByteArray& sha256) const;
  // False when the file could not be written. The answer is then written with a later one, or by
  // StorePending().
  bool Trust(const QString& address, const QByteArray& sha256);
  // Writes what could not be written before. False when something is still not written.
  bool StorePending() { return store_.StorePending(); }

  // As people compare it: pairs of capital hex digits joined by ":".
  static QString Fingerprint(const QByteArray& sha256);

 private:
  IniStore store_;
};

}  // namespace quayline
