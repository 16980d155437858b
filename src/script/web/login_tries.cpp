// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/login_tries.h"

#include <algorithm>
#include <chrono>

namespace quayline {

namespace {

constexpr int kMaxTries = 2;
// The engine sends a request with the login that it was given within this time.
constexpr std::chrono::seconds kSoon(1);

QUrl Key(const QUrl& url) { return url.adjusted(QUrl::RemoveFragment | QUrl::RemoveUserInfo); }

}  // namespace

void LoginTries::Realm::DropUnsent() {
  if (const auto given = pending.find(unsent_url); given != pending.end() && --*given <= 0) {
    pending.erase(given);
  }
}

LoginTries::Verdict LoginTries::Ask(const QString& name, const QUrl& full_url, bool is_alone) {
  const QUrl url = Key(full_url);
  Realm& realm = realms_[name];
  realm_of_.insert(url, name);
  TakeBackUnsent(realm);
  const int before = realm.pending.value(url);
  if (realm.is_accepted && before < kMaxTries) {
    ++realm.pending[url];
    return realm.second_is_right != (before > 0) ? Verdict::kSecond : Verdict::kFirst;
  }
  if (realm.is_accepted) {
    realm.is_accepted = false;  // the same request asked three times: the password was changed
    realm.tries = kMaxTries;
  }
  const bool has_tries = realm.tries < kMaxTries && (any_accepted_ || untried_ < kMaxTries);
  if (!has_tries) {
    return Refuse(realm, url);
  }
  if (is_alone && before == 0 && realm.IsOnTrial() && url.scheme() == QLatin1String("http")) {
    return realm.tries == 1 ? Verdict::kFirst : Verdict::kSecond;  // waits in the gate
  }
  if (!is_alone || (before == 0 && realm.IsOnTrial())) {
    return Verdict::kLater;
  }
  ++realm.pending[url];
  ++realm.tries;
  ++untried_;
  realm.on_its_way.setRemainingTime(kSoon);
  realm.is_unsent = url.scheme() == QLatin1String("http");  // over TLS it is not seen
  realm.unsent_url = url;
  return realm.tries == 1 ? Verdict::kFirst : Verdict::kSecond;
}

bool LoginTries::IsAcceptedFor(const QUrl& url) const {
  return IsAccepted(realm_of_.value(Key(url)));
}

// The page was left before the engine sent the login: it was no try, and whatever is sent for that
// address later is judged as if it had not been given.
void LoginTries::TakeBackUnsent(Realm& realm) {
  if (!realm.is_unsent || realm.IsOnTrial()) {
    return;
  }
  realm.is_unsent = false;
  realm.DropUnsent();
  --realm.tries;
  --untried_;
}

LoginTries::Verdict LoginTries::Refuse(Realm& realm, const QUrl& url) {
  realm.pending.remove(url);
  realm.sent.remove(url);
  return Verdict::kRefused;
}

std::optional<LoginWatch::Pass> LoginTries::Judge(const QUrl& full_url, bool is_first_alone) {
  using Pass = LoginWatch::Pass;
  const QUrl url = Key(full_url);
  if (!realm_of_.contains(url)) {
    if (any_accepted_) {
      return Pass::kSend;
    }
    if (untried_ == 0) {
      return std::nullopt;
    }
    // It may need no login, so that its answer shows nothing; and the request that tries the login
    // may be queued after it.
    const bool is_unsent = std::ranges::any_of(realms_, &Realm::is_unsent);
    const bool is_on_trial = std::ranges::any_of(realms_, &Realm::IsOnTrial);
    return is_on_trial && !is_unsent ? Pass::kWait : Pass::kWithoutLogin;
  }
  Realm& realm = realms_[realm_of_.value(url)];
  if (realm.is_accepted) {
    return Pass::kSend;
  }
  if (is_first_alone && realm.tries > 1) {
    return Pass::kWithoutLogin;  // it was refused
  }
  if (realm.is_unsent && url != realm.unsent_url) {
    realm.DropUnsent();
    ++realm.pending[url];
  }
  if (realm.sent.value(url) >= realm.pending.value(url)) {
    return realm.IsOnTrial() ? Pass::kWait : Pass::kWithoutLogin;
  }
  ++realm.sent[url];
  realm.is_unsent = false;
  ++realm.in_flight;
  realm.on_its_way.setRemainingTime(0);
  return Pass::kSend;
}

void LoginTries::NoteAnswer(const QUrl& full_url, std::optional<int> status) {
  constexpr int kLoginWanted = 401;
  constexpr int kForbidden = 403;
  const QUrl url = Key(full_url);
  const auto realm = realms_.find(realm_of_.value(url));
  if (realm == realms_.end() || realm->sent.value(url) == 0) {
    return;
  }
  realm->in_flight = std::max(realm->in_flight - 1, 0);
  if (!status) {
    return;
  }
  if (*status == 0) {
    --realm->sent[url];
  } else if (status != kLoginWanted && status != kForbidden) {
    NoteArrival(url);
  }
}

void LoginTries::Accept(Realm& realm) {
  if (!realm.is_accepted) {
    realm.second_is_right = realm.tries > 1;
  }
  realm.is_accepted = true;
  realm.tries = 0;
  realm.pending.clear();
  realm.sent.clear();
  realm.in_flight = 0;
  realm.on_its_way.setRemainingTime(0);
  realm.is_unsent = false;
  any_accepted_ = true;
}

void LoginTries::NoteArrival(const QUrl& full_url) {
  const QUrl url = Key(full_url);
  if (const auto realm = realms_.find(realm_of_.value(url));
      realm != realms_.end() && realm->pending.contains(url)) {
    Accept(*realm);
  }
}

void LoginTries::NoteArrivals(const std::function<bool(const QUrl&)>& has_arrived) {
  for (Realm& realm : realms_) {
    // Nothing reports the answer to a script's request there.
    const auto is_right = [&](const QUrl& url) {
      return url.scheme() == QLatin1String("https") && (has_arrived(url) || !realm.IsOnTrial());
    };
    if (std::ranges::any_of(realm.pending.keys(), is_right)) {
      Accept(realm);
    }
  }
}

}  // namespace quayline
