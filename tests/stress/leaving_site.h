// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSet>

#include <vector>

#include "demo/http_server.h"

namespace quayline::stress {

// What a click on the button "go" of a page comes to.
enum class Leaves {
  kForNextPage,   // a save, and the next page in the window
  kInBackground,  // a save, and the page stays
  kNotAtAll,      // neither
};

// One way in which a page leaves for another.
struct WayOut {
  const char* name;
  Leaves leaves;
  // The markup of the page; "@SAVE@" stands for the address that saves.
  const char* markup;
};

const std::vector<WayOut>& WaysOut();

// A web site whose pages are numbered. Page n has a button "go" that saves and leads on to page
// n + 1, in one of the ways; a box "number" says which page it is. A save that reaches the server
// is remembered by its number.
class LeavingSite final {
 public:
  explicit LeavingSite(demo::AnswerDelay delay);

  // The address of page `number` of a way, as a script's nav names it: without a leading slash.
  static QString PagePath(int way, int number);
  quint16 Port() const { return port_; }
  bool WasSaved(int way, int number) const { return saved_.contains({way, number}); }

 private:
  demo::HttpResponse Answer(const demo::HttpRequest& request);

  demo::HttpServer server_;
  quint16 port_ = 0;
  QSet<std::pair<int, int>> saved_;
};

}  // namespace quayline::stress
