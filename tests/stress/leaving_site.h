// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSet>

#include <vector>

#include "transport/http_server.h"

namespace quayline::stress {

// What a click on the button "go" of a page comes to.
enum class Leaves {
  kForNextPage,   // a save, and the next page in the window
  kInBackground,  // a save, and the page stays
  kNotAtAll,      // neither
  kSomewhere,     // a save; the page may be any after it
};

// One way in which a page leaves for another.
struct WayOut {
  const char* name;
  Leaves leaves;
  // The markup of the page; "@SAVE@" stands for the address that saves, "@POPUP@" for the page that
  // has the markup `popup`.
  const char* markup;
  const char* popup = "";
  int clicks = 1;      // on "go", each in the window on show
  bool types = false;  // the save counts only with the text that was typed into the box "text"
  bool asks = false;   // in place of the click, the list "rules" is asked for its option "row"
  int scripts = 0;     // that the page loads; the array "parts" holds one number for each
  // How many connections the router serves at a time: small ones close those that are too many.
  int connections = HttpServer::kMaxConnections;
  bool late = false;   // the save comes later than a page is waited for; the log may say so
  bool works = false;  // for ever, by itself: a step may cost a second more than a plain one
};

const std::vector<WayOut>& WaysOut();
// More of them: pages with work of their own all the time, windows that close themselves, boxes and
// lists that are drawn late or again.
const std::vector<WayOut>& HardWays();
// Both, in this order. The number of a way is its index here.
const std::vector<WayOut>& AllWays();

// A web site whose pages are numbered. Page n has a button "go" that saves and leads on to page
// n + 1, in one of the ways; a box "number" says which page it is. A save that reaches the server
// is remembered by its number.
class LeavingSite final {
 public:
  explicit LeavingSite(AnswerDelay delay);

  // Serves as the router of that way.
  void Begin(int way);

  // The address of page `number` of a way, as a script's nav names it: without a leading slash.
  static QString PagePath(int way, int number);
  // What is typed into the box "text" of page `number`.
  static QString TypedText(int number);
  quint16 Port() const { return port_; }
  bool WasSaved(int way, int number) const { return saved_.contains({way, number}); }

 private:
  HttpResponse Answer(const HttpRequest& request);
  HttpResponse AnswerToSave(const QString& answer, int way, int number) const;
  HttpResponse Page(int way, int number, bool is_popup) const;

  HttpServer server_;
  quint16 port_ = 0;
  QSet<std::pair<int, int>> saved_;
};

}  // namespace quayline::stress
