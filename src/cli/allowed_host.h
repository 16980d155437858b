// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace quayline {

// A host of the option --allow-host: HOST or HOST:PORT. Without a port it means the default port of
// http or https.
struct AllowedHost {
  QString host;
  std::optional<int> port;

  bool operator==(const AllowedHost&) const = default;

  // Nothing where `text` is no such pair.
  static std::optional<AllowedHost> Parse(const QString& text);
  // Whether `address` (scheme, "://", host, ":" and port) leads there.
  bool Holds(const QString& address) const;
};

}  // namespace quayline
