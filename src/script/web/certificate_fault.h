// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSslCertificate>
#include <QString>

#include "i18n/message.h"

namespace quayline {

// The message that names what is wrong with the certificate that `host` shows. It is read from the
// certificate: the engine reports only one fault, and of a router's own certificate always that
// nobody vouches for it.
const Message& CertificateFault(const QSslCertificate& certificate, const QString& host);

}  // namespace quayline
