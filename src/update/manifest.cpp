// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "update/manifest.h"

#include <QCryptographicHash>
#include <QFile>
#include <QThread>

#include <optional>
#include <sodium.h>

#include "core/ini_text.h"

namespace quayline {

namespace {

const QString kSection = QStringLiteral("update");
constexpr QByteArrayView kSignatureSection("[signature]");
constexpr QByteArrayView kSignatureKey("ed25519=");
constexpr qsizetype kDigestBytes = 32;

// sodium_init() may be called any number of times.
bool IsSodiumReady() { return sodium_init() >= 0; }

const unsigned char* Bytes(const QByteArray& bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.constData());
}
unsigned char* Bytes(QByteArray& bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

struct SignedText {
  QByteArray text;
  QByteArray signature;
};

// The text is all before the signature's section, which is the last one and holds one line.
std::optional<SignedText> Split(const QByteArray& bytes) {
  const QByteArray mark = '\n' + kSignatureSection.toByteArray();
  const qsizetype place = bytes.indexOf(mark);
  if (place < 0) {
    return std::nullopt;
  }
  const QByteArray line = bytes.mid(place + mark.size()).trimmed();
  const bool is_one_line = line.startsWith(kSignatureKey) && !line.contains('\n');
  return SignedText{.text = bytes.left(place + 1),
                    .signature = is_one_line
                                     ? QByteArray::fromBase64(line.mid(kSignatureKey.size()))
                                     : QByteArray()};
}

bool IsSignedBy(const SignedText& signed_text, const QByteArray& key) {
  return IsSodiumReady() && key.size() == crypto_sign_PUBLICKEYBYTES &&
         signed_text.signature.size() == crypto_sign_BYTES &&
         crypto_sign_verify_detached(Bytes(signed_text.signature), Bytes(signed_text.text),
                                     static_cast<unsigned long long>(signed_text.text.size()),
                                     Bytes(key)) == 0;
}

QByteArray DigestIn(const IniText& ini, const QString& key) {
  const QByteArray digest = QByteArray::fromHex(ini.Value(kSection, key).toLatin1());
  return digest.size() == kDigestBytes ? digest : QByteArray();
}

Manifest Parse(const QByteArray& text) {
  const IniText ini(text);
  return {
      .current = ini.Value(kSection, QStringLiteral("current")),
      .download = ini.Value(kSection, QStringLiteral("download")),
      .note = ini.Value(kSection, QStringLiteral("note")),
      .download_digest = DigestIn(ini, QStringLiteral("downloadsha256")),
      .databases_digest = DigestIn(ini, QStringLiteral("databasessha256")),
      .serial = ini.Value(kSection, QStringLiteral("serial")).toLongLong(),
      .expires = QDate::fromString(ini.Value(kSection, QStringLiteral("expires")), Qt::ISODate)};
}

}  // namespace

std::expected<Manifest, ManifestError> ReadManifest(const QByteArray& bytes,
                                                    const ManifestTrust& trust) {
  if (bytes.size() > kMaxManifestBytes) {
    return std::unexpected(ManifestError::kTooLarge);
  }
  const auto signed_text = Split(bytes);
  if (trust.key.isEmpty()) {
    return Parse(signed_text ? signed_text->text : bytes);
  }
  if (!signed_text) {
    return std::unexpected(ManifestError::kNotSigned);
  }
  if (!IsSignedBy(*signed_text, trust.key)) {
    return std::unexpected(ManifestError::kWrongSignature);
  }
  Manifest manifest = Parse(signed_text->text);
  if (manifest.serial <= 0 || !manifest.expires.isValid() || manifest.download_digest.isEmpty() ||
      manifest.databases_digest.isEmpty()) {
    return std::unexpected(ManifestError::kIncomplete);
  }
  if (manifest.serial < trust.least_serial) {
    return std::unexpected(ManifestError::kOlder);
  }
  if (manifest.expires < trust.today) {
    return std::unexpected(ManifestError::kExpired);
  }
  return manifest;
}

bool HasDigest(const QString& file, const QByteArray& digest) {
  constexpr qint64 kChunk = qint64{1} << 20;
  if (digest.isEmpty()) {
    return true;
  }
  QFile opened(file);
  QCryptographicHash hash(QCryptographicHash::Sha256);
  if (!opened.open(QIODevice::ReadOnly)) {
    return false;
  }
  while (!opened.atEnd() && !QThread::currentThread()->isInterruptionRequested()) {
    hash.addData(opened.read(kChunk));
  }
  return opened.error() == QFile::NoError && hash.result() == digest;
}

QByteArray DigestOf(const QByteArray& bytes) {
  return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

SigningKey MakeSigningKey(const QByteArray& seed) {
  SigningKey key{.secret = QByteArray(crypto_sign_SECRETKEYBYTES, '\0'),
                 .for_everybody = QByteArray(crypto_sign_PUBLICKEYBYTES, '\0')};
  const bool is_made =
      IsSodiumReady() && seed.size() == crypto_sign_SEEDBYTES &&
      crypto_sign_seed_keypair(Bytes(key.for_everybody), Bytes(key.secret), Bytes(seed)) == 0;
  return is_made ? key : SigningKey();
}

QByteArray SignManifest(const QByteArray& text, const SigningKey& key) {
  const QByteArray whole = text.endsWith('\n') ? text : text + '\n';
  QByteArray signature(crypto_sign_BYTES, '\0');
  if (key.secret.isEmpty() ||
      crypto_sign_detached(Bytes(signature), nullptr, Bytes(whole),
                           static_cast<unsigned long long>(whole.size()), Bytes(key.secret)) != 0) {
    return {};
  }
  return whole + kSignatureSection.toByteArray() + '\n' + kSignatureKey.toByteArray() +
         signature.toBase64() + '\n';
}

}  // namespace quayline
