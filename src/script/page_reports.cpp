// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/page_reports.h"

#include "core/text_bytes.h"
#include "script/script_texts.h"

namespace quayline {

PageReports::PageReports(AppContext& context, JobLog& log, const RunnerTexts& texts,
                         std::function<bool()> is_logged)
    : context_(context), log_(log), texts_(texts), is_logged_(std::move(is_logged)) {}

void PageReports::Follow(PageHost* host) {
  connect(host, &PageHost::statusTextChanged, this, &PageReports::ShowStatus);
  connect(host, &PageHost::noted, this, [this](const QString& text) {
    if (is_logged_()) {
      log_.Append(LineBreak() + OnOneLine(text));
    }
  });
  connect(host, &PageHost::pageMessage, this, &PageReports::ShowMessage);
  connect(host, &PageHost::resourceFailed, this,
          [this](const QString& url) { NoteFault(script_text::kResourceFailed, url); });
  connect(host, &PageHost::scriptError, this,
          [this](const QString& description, const QString&, int, bool is_answered) {
            if (is_answered) {
              ++faults_;  // logged by the line that ran the script
            } else {
              NoteFault(script_text::kPageScriptFailed, description);
            }
            if (!context_.job_options.silent_mode) {
              ShowMessage(description);
            }
          });
}

void PageReports::Forget() {
  messages_shown_ = 0;
  notices_shown_.clear();
  faults_ = 0;
}

void PageReports::ShowStatus(const QString& text, StatusKind kind) {
  JobFlags& flags = context_.job_flags;
  if (!text.isEmpty() && text != flags.last_router_status) {
    flags.last_router_status = text;
    Q_EMIT statusAppended(Text(texts_.router_status) + QLatin1Char(' ') + text, kind);
  }
}

void PageReports::ShowMessage(const QString& text) {
  constexpr int kMaxShown = 5;
  if (++messages_shown_ <= kMaxShown) {
    Q_EMIT noticeRequested(text);
  }
}

// A page whose script failed may have sent the rules without the new one.
void PageReports::NoteFault(const Message& fault, const QString& detail) {
  constexpr int kMaxNoted = 20;
  if (is_logged_() && ++faults_ <= kMaxNoted) {
    log_.Append(LineBreak() + Text(fault).arg(OnOneLine(detail)));
  }
}

void PageReports::NoteWords(const QString& text) {
  constexpr qsizetype kMostWords = 5;
  constexpr qsizetype kLongest = 200;
  if (words_.size() < kMostWords) {
    words_.append(OnOneLine(text.left(kLongest)));
  }
}

QString PageReports::NoteError(const QString& url, int status) {
  const QString with_url =
      StatusText(status) + QStringLiteral(" (") + OnOneLine(url) + QLatin1Char(')');
  Q_EMIT errorAppended(Text(texts_.last_error) + QLatin1Char(' ') + with_url);
  return with_url;
}

void PageReports::Advise(int status) {
  const StatusNotice notice = NoticeOfStatus(StatusText(status));
  if (notices_shown_.contains(notice)) {
    return;
  }
  notices_shown_.append(notice);
  switch (notice) {
    case StatusNotice::kAccessDenied:
      Q_EMIT noticeRequested(
          Notice(texts_.access_denied,
                 {texts_.check_login, texts_.check_router_ip, texts_.log_in_by_hand}));
      break;
    case StatusNotice::kNotFound:
      Q_EMIT noticeRequested(
          Notice(texts_.not_found,
                 {texts_.check_router, texts_.check_router_ip_again, texts_.check_http_type}));
      break;
    case StatusNotice::kNone:
      break;
  }
}

QString PageReports::Notice(const Message& what, std::initializer_list<Message> steps) const {
  QString text = Text(what) + QStringLiteral("\n\n") + Text(texts_.try_steps);
  for (const Message& step : steps) {
    text += QLatin1Char('\n') + Text(step);
  }
  return text;
}

}  // namespace quayline
