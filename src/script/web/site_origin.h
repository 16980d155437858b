// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace quayline {

// Where requests may go. Another port of the same host is another program, and so another origin.
struct SiteOrigin {
  QString scheme;  // "http" or "https"
  QString host;    // in lower case, as in a URL's ASCII form; an IPv6 address without brackets
  quint16 port = 0;

  bool operator==(const SiteOrigin&) const = default;

  // The origin of an http, https, ws or wss address; a web socket belongs to the origin of the page
  // that may open it. For other addresses an origin whose port is 0.
  static SiteOrigin Of(const QUrl& url);
  // As an address, written as the engine writes it: without the port that the scheme has anyway.
  QUrl Address() const;
};

size_t qHash(const SiteOrigin& origin, size_t seed = 0);

}  // namespace quayline
