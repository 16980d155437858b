// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "core/records.h"
#include "core/router_session.h"
#include "core/settings.h"

namespace quayline {

// Keeps the session in the settings from one run to the next. Only what differs from the file is
// written, in one write. A login that the user typed is also kept for its router, in a section of
// its own, and comes back with the router.
class SessionStore final {
 public:
  // `settings` outlives it.
  explicit SessionStore(Settings& settings) : settings_(settings) {}

  // Fills address, login and the router's name from the last run.
  void Read(RouterSession& session);
  // While it is paused, Write() stores nothing: the session is not that of the user's router.
  void SetPaused(bool paused) { is_paused_ = paused; }
  // To be called after each change by the user.
  void Write(const RouterSession& session);
  // The login that choosing the router `record` brings: the user's own one if he ever typed one for
  // it, else that of the factory. What he typed before he chose any router is meant for this one.
  Login LoginFor(const RouterSession& session, const RouterRecord& record) const;

 private:
  std::optional<Login> TypedLogin(const QString& router) const;
  void AddTypedLogin(QList<IniValue>& values, const RouterSession& session) const;

  Settings& settings_;
  bool is_paused_ = false;
  RouterSession stored_;  // as the settings have it
};

}  // namespace quayline
