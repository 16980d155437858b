// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/login_tries.h"

namespace quayline {

namespace {

constexpr int kMaxTries = 2;

}  // namespace

LoginTries::Verdict LoginTries::Ask(const QString& name, const QUrl& url, bool is_alone) {
  Realm& realm = realms_[name];
  realm_of_.insert(url, name);
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
  const bool is_other_pending = !realm.pending.isEmpty() && before == 0;
  if (!is_alone || is_other_pending) {
    return Verdict::kLater;
  }
  ++realm.pending[url];
  ++realm.tries;
  ++untried_;
  return realm.tries == 1 ? Verdict::kFirst : Verdict::kSecond;
}

LoginTries::Verdict LoginTries::Refuse(Realm& realm, const QUrl& url) {
  realm.pending.remove(url);
  return Verdict::kRefused;
}

void LoginTries::Accept(Realm& realm) {
  if (!realm.is_accepted) {
    realm.second_is_right = realm.tries > 1;
  }
  realm.is_accepted = true;
  realm.tries = 0;
  realm.pending.clear();
  any_accepted_ = true;
}

void LoginTries::NoteArrival(const QUrl& url) {
  if (const auto realm = realms_.find(realm_of_.value(url));
      realm != realms_.end() && realm->pending.contains(url)) {
    Accept(*realm);
  }
}

void LoginTries::NoteAllArrived() {
  for (Realm& realm : realms_) {
    if (!realm.pending.isEmpty()) {
      Accept(realm);
    }
  }
}

}  // namespace quayline
