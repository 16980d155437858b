// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

namespace quayline {

// The login that a request over plain HTTP carries, as one line of its head.
struct RequestLogin {
  qsizetype begin = 0;  // of the line, from the end of the line before it
  qsizetype size = 0;
  QByteArray credentials;  // what follows "Authorization:", with the scheme
};

// Of Basic and Digest; the engine gives no login otherwise. `request` begins with its head, of
// `head` bytes.
std::optional<RequestLogin> FindLogin(const QByteArray& request, qsizetype head);

}  // namespace quayline
