// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/fake_page_host.h"

#include <QJsonDocument>

#include <algorithm>

#include "script/page_operations.h"

namespace quayline::testing {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String kSettleCheck("ReadMarkupState");
constexpr QLatin1String kComplaintCheck("ReadComplaints");

QString Shown(const QJsonValue& value) {
  if (value.isString()) {
    return value.toString();
  }
  return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact))
      .sliced(1)
      .chopped(1);
}

QString Line(const PageCall& call) {
  QStringList arguments;
  for (const QJsonValue& argument : call.arguments) {
    arguments.append(Shown(argument));
  }
  QString line = call.operation + u'(' + arguments.join(u", "_s) + u')';
  if (call.frame != 0) {
    line += u" in frame %1"_s.arg(call.frame);
  }
  return line;
}

QJsonValue DefaultAnswer(const PageCall& call) {
  const bool reports_its_result = call.if_gone.isString() && !call.if_gone.toString().isEmpty();
  return reports_its_result ? QJsonValue(QString::fromLatin1(page_result::kSuccessful))
                            : call.if_gone;
}

}  // namespace

PageHostFactory FakePages::Factory() {
  return [this](PageQuestions& questions, QObject* parent) -> PageHost* {
    hosts_.removeAll(nullptr);
    hosts_.append(new FakePageHost(*this, questions, static_cast<int>(hosts_.size()), parent));
    return hosts_.last();
  };
}

FakePageHost& FakePages::Host(int number) const { return *hosts_.at(number); }

void FakePages::On(std::initializer_list<const char*> starts, const Reaction& reaction) {
  for (const char* start : starts) {
    reactions_.append({QLatin1String(start), reaction});
  }
}

void FakePages::Record(FakePageHost& host, const QString& call, const Reaction& otherwise) {
  calls.append(host.number_ == 0 ? call : u"popup %1: "_s.arg(host.number_) + call);
  const auto named = std::ranges::find_if(
      reactions_, [&call](const auto& reaction) { return call.startsWith(reaction.first); });
  if (named != reactions_.end()) {
    named->second(host);
  } else if (otherwise) {
    otherwise(host);
  }
}

void FakePages::AnswerLater(FakePageHost& host, const QString& call, std::function<void()> answer) {
  if (std::ranges::none_of(silent_, [&](const QString& start) { return call.startsWith(start); })) {
    host.Later(std::move(answer));
  }
}

QJsonValue FakePages::NextAnswer(const PageCall& call, const QString& line) {
  for (auto each = answers_.begin(); each != answers_.end(); ++each) {
    if (line.startsWith(each.key())) {
      return each->size() > 1 ? each->takeFirst() : each->first();
    }
  }
  return DefaultAnswer(call);
}

FakePageHost::FakePageHost(FakePages& pages, PageQuestions& questions, int number, QObject* parent)
    : PageHost(parent), questions(questions), pages_(pages), number_(number) {}

void FakePageHost::Navigate2(const QString& url, const QString& target_frame) {
  const QString frame = target_frame.isEmpty() ? QString() : u" in frame "_s + target_frame;
  pages_.Record(*this, u"nav "_s + url + frame, [](FakePageHost& host) { host.LoadPage(); });
}

void FakePageHost::Refresh2() {
  pages_.Record(*this, u"refresh"_s, [](FakePageHost& host) { host.LoadPage(); });
}

void FakePageHost::StopNavigation() { pages_.Record(*this, u"stop"_s); }

void FakePageHost::Call(const PageCall& call, std::function<void(PageAnswer)> answer) {
  const QString line = Line(call);
  if (call.operation == kSettleCheck) {
    ++pages_.settle_reads;
  } else if (call.operation != kComplaintCheck) {
    pages_.Record(*this, line);
  }
  pages_.AnswerLater(*this, line, [this, call, line, answer = std::move(answer)] {
    answer({.answered = true,
            .value = pages_.NextAnswer(call, line),
            .markup_state = pages_.settled_state});
  });
}

void FakePageHost::RunInPage(const PageScript& script, std::function<void(const QString&)> done) {
  const QString line = u"run "_s + script.code;
  pages_.script_entry = script.entry;
  pages_.Record(*this, line);
  pages_.AnswerLater(*this, line, [this, done = std::move(done)] {
    done(std::exchange(pages_.script_error, {}));
  });
}

void FakePageHost::SendKeys(const QString& keys) { pages_.Record(*this, u"keys "_s + keys); }

void FakePageHost::ClearCache(std::function<void(bool)> done) {
  pages_.Record(*this, u"clear cache"_s);
  pages_.AnswerLater(*this, u"clear cache"_s,
                     [this, done = std::move(done)] { done(pages_.clears_cache); });
}

void FakePageHost::ReportIdle(PendingWork, std::function<void(IdleReport)> report) {
  // After whatever the call before has started.
  Later([this, report = std::move(report)] {
    Later([this, report] { report({.settled_state = pages_.settled_state}); });
  });
}

void FakePageHost::BeginNavigation() {
  ++navigation_.starts;
  navigation_.busy = true;
  Q_EMIT navigationChanged();
  Q_EMIT beforeNavigate();
}

void FakePageHost::EndNavigation() {
  navigation_.busy = false;
  Q_EMIT navigationChanged();
  Q_EMIT documentComplete();
}

void FakePageHost::FailNavigation(const QString& url, int status) {
  navigation_.busy = false;
  Q_EMIT navigationChanged();
  Q_EMIT navigateError(url, status);
}

void FakePageHost::LoadPage() {
  Later([this] {
    BeginNavigation();
    Later([this] { EndNavigation(); });
  });
}

void FakePageHost::LoadBrokenPage(int status) {
  Later([this, status] {
    BeginNavigation();
    Later([this, status] { FailNavigation(u"http://x/"_s, status); });
  });
}

FakePageHost& FakePageHost::OpenPopup() {
  auto* popup = static_cast<FakePageHost*>(pages_.Factory()(questions, nullptr));
  Q_EMIT newWindow(popup);
  return *popup;
}

void FakePageHost::CloseWindow() { Q_EMIT windowClosing(); }

void FakePageHost::Later(std::function<void()> move) {
  QMetaObject::invokeMethod(this, std::move(move), Qt::QueuedConnection);
}

}  // namespace quayline::testing
