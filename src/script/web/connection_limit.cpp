// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/connection_limit.h"

#include <utility>

namespace quayline {

quint64 ConnectionLimit::Take(const SiteOrigin& origin, std::function<void()> connect) {
  Line& line = lines_[origin];
  const quint64 place = ++last_place_;
  if (line.taken.size() < kPlaces) {
    line.taken.append(place);
    connect();
  } else {
    line.waiting.append({.place = place, .connect = std::move(connect)});
  }
  return place;
}

void ConnectionLimit::Release(const SiteOrigin& origin, quint64 place) {
  Line& line = lines_[origin];
  line.waiting.removeIf([place](const Waiting& waiting) { return waiting.place == place; });
  if (!line.taken.removeOne(place) || line.waiting.isEmpty()) {
    return;
  }
  const Waiting next = line.waiting.takeFirst();
  line.taken.append(next.place);
  next.connect();
}

}  // namespace quayline
