// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/script_calls.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <utility>

namespace quayline {

QString AsJavaScript(const QJsonArray& values) {
  return QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact));
}

ScriptCalls::~ScriptCalls() { *alive_ = false; }

void ScriptCalls::Run(const QString& code, quint32 world, Answer done) {
  if (page_ == nullptr) {
    done({});
    return;
  }
  const HeldCall call{.number = ++last_number_, .code = code, .world = world};
  open_.emplace(call.number, std::move(done));
  if (is_holding_) {
    held_.append(call);
  } else {
    Send(call);
  }
}

void ScriptCalls::Release() {
  is_holding_ = false;
  for (const HeldCall& call : std::exchange(held_, {})) {
    Send(call);
  }
}

void ScriptCalls::Send(const HeldCall& call) {
  page_->runJavaScript(call.code, call.world,
                       [this, number = call.number, alive = alive_](const QVariant& result) {
                         if (*alive) {
                           if (auto answered = open_.extract(number)) {
                             answered.mapped()(result);
                           }
                         }
                       });
}

void ScriptCalls::AnswerAll() {
  page_ = nullptr;
  held_.clear();
  const auto alive = alive_;
  const auto unanswered = std::exchange(open_, {});
  for (const auto& [number, done] : unanswered) {
    if (*alive) {
      done({});
    }
  }
}

}  // namespace quayline
