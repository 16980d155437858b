// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/page_parts.h"

#include <algorithm>
#include <utility>

#include "script/web/web_page.h"
#include "script/web/web_profile.h"

namespace quayline {

PageParts::PageParts(WebProfile& profile, std::function<WebPage*()> make_page, QObject* parent)
    : QObject(parent), profile_(profile), make_page_(std::move(make_page)) {}

void PageParts::Forget() {
  missing_.clear();
  logins_postponed_.clear();
  probe_.reset();
}

bool PageParts::StopJudging() { return std::exchange(probe_, nullptr) != nullptr; }

void PageParts::Judge(bool for_missing, std::function<void(bool needs_repeat)> answer) {
  if (logins_postponed_.isEmpty()) {
    const bool is_new = std::ranges::any_of(
        missing_, [this](const QUrl& url) { return !profile_.IsKnownMissing(url); });
    answer(for_missing && is_new);
    return;
  }
  const QUrl url = *logins_postponed_.cbegin();
  if (profile_.Logins().IsAcceptedFor(url)) {
    answer(true);
    return;
  }
  probe_ = std::make_unique<LoginProbe>(std::unique_ptr<WebPage>(make_page_()), url);
  connect(probe_.get(), &LoginProbe::over, this,
          [this, url, answer = std::move(answer)](bool is_answered) {
            const auto done = answer;  // goes with the probe
            probe_.release()->deleteLater();
            if (is_answered) {
              profile_.Logins().NoteArrival(url);
            }
            done(profile_.Logins().IsAcceptedFor(url));
          });
}

}  // namespace quayline
