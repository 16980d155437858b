// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/script_signature.h"

#include <QCryptographicHash>
#include <QFile>

#include <sodium.h>

#include "core/save_file.h"

namespace quayline {

namespace {

constexpr QByteArrayView kAuthor("# author: ");
constexpr QByteArrayView kKey("# key: ");
constexpr QByteArrayView kSignature("# signature: ");
constexpr qsizetype kLongestName = 60;

const unsigned char* Bytes(const QByteArray& bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.constData());
}
unsigned char* Bytes(QByteArray& bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

// What follows `mark` in the first line of `*text`, which is then cut off.
std::optional<QByteArray> TakeLine(QByteArray* text, QByteArrayView mark) {
  if (!text->startsWith(mark)) {
    return std::nullopt;
  }
  const qsizetype end = text->indexOf('\n');
  const QByteArray line = text->left(end < 0 ? text->size() : end).mid(mark.size()).trimmed();
  *text = end < 0 ? QByteArray() : text->mid(end + 1);
  return line;
}

QByteArray Head(const QByteArray& author, const QByteArray& key) {
  return kAuthor.toByteArray() + author + '\n' + kKey.toByteArray() + key + '\n';
}

QString ShownName(const QByteArray& name) {
  QString shown = QString::fromUtf8(name).simplified();
  shown.removeIf([](QChar c) { return !c.isPrint(); });
  return shown.left(kLongestName);
}

QByteArray Decode(const QByteArray& base64) {
  const auto decoded =
      QByteArray::fromBase64Encoding(base64, QByteArray::AbortOnBase64DecodingErrors);
  return decoded ? *decoded : QByteArray();
}

AuthorKey KeyOf(const QByteArray& seed) {
  AuthorKey key{.secret = QByteArray(crypto_sign_SECRETKEYBYTES, '\0'),
                .for_everybody = QByteArray(crypto_sign_PUBLICKEYBYTES, '\0')};
  const bool is_made =
      sodium_init() >= 0 && seed.size() == crypto_sign_SEEDBYTES &&
      crypto_sign_seed_keypair(Bytes(key.for_everybody), Bytes(key.secret), Bytes(seed)) == 0;
  return is_made ? key : AuthorKey();
}

}  // namespace

std::optional<ScriptAuthor> ReadAuthor(const QByteArray& file) {
  QByteArray rest = file;
  rest.replace("\r\n", "\n");
  const auto name = TakeLine(&rest, kAuthor);
  const auto key_line = name ? TakeLine(&rest, kKey) : std::nullopt;
  const auto signature_line = key_line ? TakeLine(&rest, kSignature) : std::nullopt;
  ScriptAuthor author{.name = ShownName(name.value_or(QByteArray())), .key = {}};
  if (!key_line) {
    return author;
  }
  const QByteArray key = Decode(*key_line);
  const QByteArray signature = Decode(signature_line.value_or(QByteArray()));
  const QByteArray text = Head(*name, *key_line) + rest;
  if (sodium_init() < 0 || key.size() != crypto_sign_PUBLICKEYBYTES ||
      signature.size() != crypto_sign_BYTES ||
      crypto_sign_verify_detached(Bytes(signature), Bytes(text),
                                  static_cast<unsigned long long>(text.size()), Bytes(key)) != 0) {
    return std::nullopt;
  }
  author.key = key;
  return author;
}

AuthorKey OwnAuthorKey(const QString& path) {
  QFile file(path);
  if (file.open(QIODevice::ReadOnly)) {
    return KeyOf(Decode(file.readAll().trimmed()));
  }
  QByteArray seed(crypto_sign_SEEDBYTES, '\0');
  if (QFile::exists(path) || sodium_init() < 0) {
    return {};
  }
  randombytes_buf(seed.data(), static_cast<size_t>(seed.size()));
  return SaveFile(path, seed.toBase64() + '\n', kPrivateFile) ? KeyOf(seed) : AuthorKey();
}

QByteArray SignText(const QByteArray& text, const QString& author, const AuthorKey& key) {
  QByteArray rest = text;
  rest.replace("\r\n", "\n");
  const QByteArray head = Head(ShownName(author.toUtf8()).toUtf8(), key.for_everybody.toBase64());
  const QByteArray whole = head + rest;
  QByteArray signature(crypto_sign_BYTES, '\0');
  if (!key.IsValid() ||
      crypto_sign_detached(Bytes(signature), nullptr, Bytes(whole),
                           static_cast<unsigned long long>(whole.size()), Bytes(key.secret)) != 0) {
    return {};
  }
  return head + kSignature.toByteArray() + signature.toBase64() + '\n' + rest;
}

QString KeyFingerprint(const QByteArray& key) {
  constexpr qsizetype kShownBytes = 10;
  const QByteArray hash = QCryptographicHash::hash(key, QCryptographicHash::Sha256);
  QString shown = QString::fromLatin1(hash.first(kShownBytes).toHex().toUpper());
  for (qsizetype place = shown.size() - 4; place > 0; place -= 4) {
    shown.insert(place, u' ');
  }
  return shown;
}

}  // namespace quayline
