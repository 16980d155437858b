// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quayline {

// A router's text file that is passed on may begin with its author and a signature (Ed25519):
//
//   # author: Jane
//   # key: <base64>
//   # signature: <base64>
//
// The signature is of the two lines before it and of everything after it, with LF line ends.

struct ScriptAuthor {
  QString name;    // as the file says, on one line; may be empty
  QByteArray key;  // that the file is signed with; empty: not signed
};

// Who the file says it is from. Nothing if the signature does not fit the rest of the file. The
// bytes are untrusted.
std::optional<ScriptAuthor> ReadAuthor(const QByteArray& file);

// The key pair of a user.
struct AuthorKey {
  QByteArray secret;
  QByteArray for_everybody;

  bool IsValid() const { return !secret.isEmpty(); }
};

// The user's key, which is made at the first time. Stored in `path`, which only the user can read.
// Not valid if that fails.
AuthorKey OwnAuthorKey(const QString& path);

// `text` with the author and his signature in front; empty on failure.
QByteArray SignText(const QByteArray& text, const QString& author, const AuthorKey& key);

// A key as people compare it: the beginning of its SHA-256, in groups of four.
QString KeyFingerprint(const QByteArray& key);

}  // namespace quayline
