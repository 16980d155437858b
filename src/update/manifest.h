// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDate>
#include <QString>

#include <expected>

namespace quayline {

inline constexpr qint32 kMaxManifestBytes = 64 << 10;

// The file "update.ini" of the maker's server: what the newest version is, and where.
//
//   [update]
//   current=3.1.0
//   download=https://server/updates/quayline-3.1.0.exe
//   note=...
//   downloadsha256=<hex>            of the installer
//   databasessha256=<hex>           of the package of databases
//   serial=12                       grows with each new manifest
//   expires=2027-01-31
//   [signature]
//   ed25519=<base64>                of every byte before this section
//
// Only the first three are needed, unless a key is known: then the signature, the digests, the
// serial and the last day are, too.
struct Manifest {
  QString current;
  QString download;
  QString note;
  QByteArray download_digest;  // SHA-256; empty: not known
  QByteArray databases_digest;
  qint64 serial = 0;
  QDate expires;
};

enum class ManifestError {
  kTooLarge,
  kNotSigned,
  kWrongSignature,  // or anything after the signature
  kIncomplete,      // signed, but without what it then has to say
  kExpired,
  kOlder  // than one that was accepted before
};

// What a manifest is checked with.
struct ManifestTrust {
  QByteArray key;  // Ed25519, 32 bytes; empty: manifests need not be signed
  qint64 least_serial = 0;
  QDate today;
};

// The bytes are untrusted.
std::expected<Manifest, ManifestError> ReadManifest(const QByteArray& bytes,
                                                    const ManifestTrust& trust);

// Whether `file` has this SHA-256. An empty digest fits every file. Takes seconds for a large file;
// false where the thread is interrupted.
bool HasDigest(const QString& file, const QByteArray& digest);
QByteArray DigestOf(const QByteArray& bytes);

// For who publishes manifests: the key pair of a secret of 32 bytes, and `text` with its signature.
struct SigningKey {
  QByteArray secret;
  QByteArray for_everybody;
};
SigningKey MakeSigningKey(const QByteArray& seed);
QByteArray SignManifest(const QByteArray& text, const SigningKey& key);

}  // namespace quayline
