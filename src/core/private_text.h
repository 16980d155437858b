// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

#include "core/router_session.h"

namespace quayline {

// What makes a text fit to be passed on. All of it may come from pages.

// The passwords of `logins` become "****", also as addresses, markup and login headers write them.
// A password of up to three characters is replaced where it is a word of its own: the text would be
// unreadable otherwise, and would show the password by what is missing.
QString WithoutLogins(QString text, const QList<Login>& logins);

// Addresses of the internet become "(address)"; those of home networks stay.
QString WithoutOutsideAddresses(const QString& text);

// A host becomes "(router)".
QString WithoutHost(QString text, const QString& host);

}  // namespace quayline
