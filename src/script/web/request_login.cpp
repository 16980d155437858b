// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/request_login.h"

#include <algorithm>

namespace quayline {

std::optional<RequestLogin> FindLogin(const QByteArray& request, qsizetype head) {
  const QByteArray lines = request.first(std::min(head, request.size())).toLower();
  const qsizetype basic = lines.indexOf("\nauthorization: basic ");
  const qsizetype begin = basic >= 0 ? basic : lines.indexOf("\nauthorization: digest ");
  if (begin < 0) {
    return std::nullopt;
  }
  const qsizetype next = lines.indexOf('\n', begin + 1);
  const qsizetype end = next < 0 ? lines.size() : next;
  const qsizetype value = lines.indexOf(':', begin) + 1;
  return RequestLogin{.begin = begin,
                      .size = end - begin,
                      .credentials = request.sliced(value, end - value).trimmed()};
}

}  // namespace quayline
