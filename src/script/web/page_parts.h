// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSet>
#include <QUrl>

#include <functional>
#include <memory>

#include "script/web/login_probe.h"

namespace quayline {

class WebPage;
class WebProfile;

// The parts that a page lacks after its load: scripts, style sheets and frames that did not come,
// and whatever was refused because its login has to wait for another one. It decides whether the
// page may be complete when it is loaded once more. PageLoads owns it.
class PageParts final : public QObject {
 public:
  // `make_page` makes a page that is not shown, for a login that is tried.
  PageParts(WebProfile& profile, std::function<WebPage*()> make_page, QObject* parent);

  // Another load begins, or this one is over. A judgement that is under way is dropped.
  void Forget();
  void NoteMissing(const QUrl& url) { missing_.insert(url); }
  void NoteLoginPostponed(const QUrl& url) { logins_postponed_.insert(url); }
  const QSet<QUrl>& Missing() const { return missing_; }

  // Whether loading the page once more may bring what it lacks. Missing parts count if they do
  // `for_missing`, and if they were not missing before. The answer comes inside the call, or, where
  // a login has to be tried first, later.
  void Judge(bool for_missing, std::function<void(bool needs_repeat)> answer);
  // Drops the judgement. False if none was under way.
  bool StopJudging();

 private:
  WebProfile& profile_;
  std::function<WebPage*()> make_page_;
  QSet<QUrl> missing_;
  QSet<QUrl> logins_postponed_;
  std::unique_ptr<LoginProbe> probe_;
};

}  // namespace quayline
