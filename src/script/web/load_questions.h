// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QUrl>

#include <functional>
#include <optional>

#include "script/page_questions.h"

namespace quayline {

class WebPage;
class WebProfile;

// What a load asks of others before it can go on: the user for a login or about an address, the
// page for what it is. PageLoads owns it. An answer that comes when the load is over is dropped.
class LoadQuestions final : public QObject {
 public:
  // Asks the user for the login of a router.
  using AskLogin = std::function<void(
      const QString& address, const std::function<void(std::optional<TypedLogin>)>& answer)>;

  // Asks the user whether pages may go to the origin of `url`, which the router led to.
  using AskAddress =
      std::function<void(const QUrl& url, const std::function<void(bool allowed)>& answer)>;

  LoadQuestions(WebProfile& profile, AskLogin ask_login, AskAddress ask_address, QObject* parent);

  // The load is over.
  void Drop() { ++load_; }

  // `answer` may be called inside the call. Without a login the user refused.
  void AskForLogin(const QUrl& url, std::function<void(std::optional<TypedLogin>)> answer);
  // An address that is allowed stays allowed, even when the load is over.
  void AskForAddress(const QUrl& url, std::function<void(bool allowed)> answer);
  // Whether the page has a box for a password.
  void AskIsLoginPage(WebPage* page, std::function<void(bool)> answer);

 private:
  WebProfile& profile_;
  AskLogin ask_login_;
  AskAddress ask_address_;
  quint64 load_ = 0;  // counts them, so that an answer about an earlier one is known
};

}  // namespace quayline
