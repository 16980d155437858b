// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace quayline {

// How an address is shown: without a login.
QString ShownUrl(const QUrl& url);
// The same for a text that is no address.
QString WithoutLogin(const QString& address);

// Whether the engine can open pages of a host by this name.
bool IsHost(const QString& host);

}  // namespace quayline
