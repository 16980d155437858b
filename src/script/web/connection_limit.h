// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>

#include <chrono>
#include <functional>

#include "script/web/site_origin.h"

namespace quayline {

// How many connections to one origin are open at a time. Small routers serve a few, and close the
// next one without an answer; a page that loads 20 scripts would lose some of them, and a save too.
//
// Who wants a connection takes a place. Where all places of the origin are taken, it waits for one;
// the first that came is the first that gets one. A place is held until the router has closed its
// side of the connection. But nobody waits for a request that is held open (a long poll, an event
// source, a web socket): a connection on which nothing is sent or received for a time gives its
// place back, and goes on without one.
class ConnectionLimit final {
 public:
  static constexpr int kPlaces = 4;
  // A connection gives its place back when nothing was sent or received for this time: before the
  // answer, and after a part of the answer.
  static constexpr std::chrono::milliseconds kUnanswered{1000};
  static constexpr std::chrono::milliseconds kPause{100};
  // What the router is given to close its side, when the answer is complete.
  static constexpr std::chrono::milliseconds kClosing{200};

  // Calls `connect` when there is a place, which may be inside the call. Returns the number of the
  // place, for Release().
  quint64 Take(const SiteOrigin& origin, std::function<void()> connect);

  // Gives a place back, or leaves the line. The next one in the line may connect inside the call. A
  // place that was given back already stays so.
  void Release(const SiteOrigin& origin, quint64 place);

 private:
  struct Waiting {
    quint64 place = 0;
    std::function<void()> connect;
  };
  struct Line {
    QList<quint64> taken;
    QList<Waiting> waiting;
  };

  QHash<SiteOrigin, Line> lines_;
  quint64 last_place_ = 0;
};

}  // namespace quayline
