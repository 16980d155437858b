// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QDeadlineTimer>
#include <QHash>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

#include "script/web/login_watch.h"

namespace quayline {

// Decides whether the router's login is given to a login question of the browser.
//
// Routers lock their login for minutes to hours after five to ten wrong tries, so a login that was
// not accepted yet is sent twice at most in a job. One that was accepted is given as often as the
// router asks: some end the session with every save, or ask again for every page. Each realm of the
// router is judged by itself, since it may have another password.
//
// An untried login goes out with one request at a time. The engine attaches a login that it was
// given to every request that is queued, before the first one is answered; where many are queued
// (the images of a page), the login has to be tried with a single one first. Over plain HTTP the
// gate makes other requests that carry the login wait for the answer (Judge). Of those that were
// asked for a login, the first one to reach the gate tries it: the engine has few connections to a
// host, and the request that the login was given for may be queued after the others.
class LoginTries final {
 public:
  enum class Verdict {
    kFirst,    // give the login without the blanks at its ends: more often slips than meant
    kSecond,   // give it as it was typed
    kLater,    // not now: it may be right, and has to be tried with a request that is alone
    kRefused,  // never: it was refused too often
  };

  // A question for `url`. `is_alone`: no other requests are queued beside it.
  Verdict Ask(const QString& realm, const QUrl& url, bool is_alone);
  // As LoginWatch has them. Until a login is accepted, it is sent as often as it was given.
  // `is_first_alone`: the request carries the login of the first try, and the second one differs.
  // Nothing: no login was given at all, so it is one of the page's own.
  std::optional<LoginWatch::Pass> Judge(const QUrl& url, bool is_first_alone);
  void NoteAnswer(const QUrl& url, std::optional<int> status);
  // What was asked for at `url` arrived, so a login that was given for it is right.
  void NoteArrival(const QUrl& url);
  // Over TLS, where the gate sees no answer: of what the login was given for, everything that
  // `has_arrived` is true for has arrived, except what was refused since.
  void NoteArrivals(const std::function<bool(const QUrl&)>& has_arrived);
  bool IsAccepted(const QString& realm) const { return realms_.value(realm).is_accepted; }
  // The same for whatever realm the question for `url` was of.
  bool IsAcceptedFor(const QUrl& url) const;
  // Another login.
  void Reset() { *this = LoginTries(); }

 private:
  struct Realm {
    bool is_accepted = false;
    bool second_is_right = false;
    int tries = 0;                 // since it was accepted last
    QHash<QUrl, int> pending;      // questions that were answered, and how often
    QHash<QUrl, int> sent;         // of these, requests with the login that were passed on
    int in_flight = 0;             // of these, requests that are not answered yet
    QDeadlineTimer on_its_way{0};  // from the engine, after the login was given
    bool is_unsent = false;        // the login given last has not come by
    QUrl unsent_url;               // what it was given for

    bool IsOnTrial() const { return in_flight > 0 || !on_its_way.hasExpired(); }
    void DropUnsent();
  };

  void TakeBackUnsent(Realm& realm);
  Verdict Refuse(Realm& realm, const QUrl& url);
  void Accept(Realm& realm);

  QHash<QString, Realm> realms_;
  QHash<QUrl, QString> realm_of_;
  int untried_ = 0;  // logins sent before any realm accepted one
  bool any_accepted_ = false;
};

}  // namespace quayline
