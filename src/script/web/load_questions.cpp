// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/load_questions.h"

#include <QWebEngineScript>

#include <utility>

#include "script/web/web_page.h"
#include "script/web/web_profile.h"

namespace quayline {

LoadQuestions::LoadQuestions(WebProfile& profile, AskLogin ask_login, AskAddress ask_address,
                             QObject* parent)
    : QObject(parent),
      profile_(profile),
      ask_login_(std::move(ask_login)),
      ask_address_(std::move(ask_address)) {}

void LoadQuestions::AskForLogin(const QUrl& url,
                                std::function<void(std::optional<TypedLogin>)> answer) {
  ask_login_(url.host(), [this, self = QPointer(this), load = load_,
                          answer = std::move(answer)](std::optional<TypedLogin> typed) {
    if (self != nullptr && load == load_) {
      answer(std::move(typed));
    }
  });
}

void LoadQuestions::AskForAddress(const QUrl& url, std::function<void(bool allowed)> answer) {
  ask_address_(url, [this, self = QPointer(this), url, load = load_,
                     answer = std::move(answer)](bool allowed) {
    if (self == nullptr) {
      return;
    }
    if (allowed) {
      profile_.Allow(url);
    }
    if (load == load_) {
      answer(allowed);
    }
  });
}

void LoadQuestions::AskIsLoginPage(WebPage* page, std::function<void(bool)> answer) {
  page->runJavaScript(
      QStringLiteral("document.querySelector('input[type=\"password\" i]') !== null"),
      QWebEngineScript::ApplicationWorld,
      [this, self = QPointer(this), load = load_,
       answer = std::move(answer)](const QVariant& found) {
        if (self != nullptr && load == load_) {
          answer(found.toBool());
        }
      });
}

}  // namespace quayline
