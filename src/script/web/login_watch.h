// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QUrl>

#include <optional>

namespace quayline {

// Decides about requests over plain HTTP that carry a login (Basic or Digest). The engine attaches
// a login that it was given for one request to others as well, before the first one is answered.
class LoginWatch {
 public:
  enum class Pass {
    kSend,
    kWait,          // ask again soon: the login is being tried with another request
    kWithoutLogin,  // the router answers 401, and the engine asks for a login
  };

  LoginWatch() = default;
  LoginWatch(const LoginWatch&) = delete;
  LoginWatch& operator=(const LoginWatch&) = delete;
  virtual ~LoginWatch() = default;

  // Whether `credentials`, the value of an Authorization header, are the login that this one gives.
  // Two browsers may be on the same router, one of them with a wrong login.
  virtual bool HasLogin(const QByteArray& credentials) const = 0;
  // Nothing: the login is of no concern to this one.
  virtual std::optional<Pass> JudgeLogin(const QUrl& url, const QByteArray& credentials) = 0;
  // A request that carried a login was answered. `status` is 0 when the router ended the connection
  // without an answer; nothing: the browser did not wait for it.
  virtual void NoteLoginAnswer(const QUrl& url, std::optional<int> status) = 0;
};

}  // namespace quayline
