// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSslCertificate>
#include <QString>

#include "i18n/message.h"

namespace quayline {

// The message about what is wrong with the certificate of `host`. It is read from the certificate:
// the engine reports only one fault, and for a self-signed certificate always that one.
const Message& CertificateFault(const QSslCertificate& certificate, const QString& host);

}  // namespace quayline
