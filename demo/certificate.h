// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSslConfiguration>
#include <QString>

#include <expected>

namespace quayline::demo {

// What a TLS server shows: the certificate and the key of two PEM files. With both names empty they
// are generated, as a router does at its first start: self-signed. That takes the command `openssl`
// and a moment. An error is a sentence.
std::expected<QSslConfiguration, QString> ServerCertificate(const QString& certificate_file,
                                                            const QString& key_file);

}  // namespace quayline::demo
