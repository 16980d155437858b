// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/web/frame_loads.h"

#include <QJsonArray>
#include <QWebEngineScript>

#include "script/status_text.h"
#include "script/web/net_error.h"
#include "script/web/router_gate.h"
#include "script/web/script_calls.h"
#include "script/web/web_page.h"
#include "script/web/web_profile.h"

namespace quayline {

namespace {

constexpr int kLoginWanted = 401;
constexpr int kFirstError = 400;

// Looks for the frames that show an error page, which no script can reach. The element of the
// blocked one has the blocked address, or one of the router's that led there.
constexpr char kOpenBlocked[] = R"(((blocked) => {
  const visit = (window_) => {
    for (const frame of window_.document.querySelectorAll('iframe, frame')) {
      if (frame.contentDocument) {
        visit(frame.contentWindow);
      } else if (frame.src === blocked || frame.src === '' ||
                 new URL(frame.src).origin === location.origin) {
        frame.contentWindow.location.replace(blocked);
      }
    }
  };
  visit(window);
}))";

// Calls a function in the agent's world. Only a script of the page can reach its frames.
void Call(WebPage* page, const char* function, const QJsonArray& arguments) {
  page->runJavaScript(
      QLatin1String(function) + QStringLiteral("(...%1)").arg(AsJavaScript(arguments)),
      QWebEngineScript::ApplicationWorld);
}

}  // namespace

FrameLoads::FrameLoads(WebProfile& profile, NavigationWatch& watch, LoadQuestions& questions,
                       QObject* parent)
    : QObject(parent), profile_(profile), watch_(watch), questions_(questions) {
  connect(&profile_.Guard(), &RequestGuard::blocked, this, &FrameLoads::OnBlocked);
  RouterGate* const gate = &RouterGate::Instance();
  const auto count = [this, gate] { watch_.RequestsUnderWay(gate->ExchangesUnderWay() > 0); };
  connect(gate, &RouterGate::exchangeStarted, this, count);
  connect(gate, &RouterGate::exchangeEnded, this, count);
  connect(gate, &RouterGate::answered, this,
          [this](quint64, const QByteArray&, const QUrl& url, int status) {
            if (IsFrame(url)) {
              Answered(url, status);
            }
          });
}

void FrameLoads::SetPage(WebPage* page) { page_ = page; }

void FrameLoads::Forget() {
  logins_refused_.clear();
  statuses_.clear();
  failure_.reset();
}

bool FrameLoads::IsFrame(const QUrl& url) const {
  return profile_.Guard().Requests().KindOf(url) == QWebEngineUrlRequestInfo::ResourceTypeSubFrame;
}

void FrameLoads::Open(const QUrl& url, const QString& frame) {
  Call(page_, "window.open", {QString::fromUtf8(url.toEncoded()), frame});
}

void FrameLoads::Navigating(const QUrl& url, FrameRequest kind) {
  watch_.FrameAsked(url, kind);
  page_->SetLonelyFrame(!watch_.IsLoading() && watch_.PendingFrames() == 1);
}

void FrameLoads::OnBlocked(const QUrl& url, bool is_navigation_by_router) {
  const bool is_of_this_page = watch_.IsLoading() || watch_.PendingFrames() > 0;
  if (!is_navigation_by_router || !IsFrame(url) || !is_of_this_page || !profile_.ShallAskFor(url)) {
    return;
  }
  questions_.AskForAddress(url, [this, url](bool allowed) {
    if (allowed && watch_.IsLoading()) {
      Q_EMIT missing(url);
    } else if (allowed) {
      OpenBlocked(url);
    }
  });
}

void FrameLoads::OpenBlocked(const QUrl& url) {
  Call(page_, kOpenBlocked, {QString::fromUtf8(url.toEncoded())});
}

void FrameLoads::Answered(const QUrl& url, int status) {
  constexpr int kNoContent = 204;
  constexpr int kResetContent = 205;
  if (status == kNoContent || status == kResetContent) {
    watch_.AnsweredEmpty(url);
  } else {
    statuses_.insert(url.adjusted(QUrl::RemoveFragment), status);
  }
}

void FrameLoads::Loaded(const QUrl& url) {
  const QUrl asked = watch_.FrameLoaded(url);
  const int status = statuses_.take(url.adjusted(QUrl::RemoveFragment));
  if (url.scheme() == QLatin1String("chrome-error")) {
    LoadedErrorPage(asked == url ? page_->url() : asked);
  } else if (logins_refused_.remove(url)) {
    Fail(url, kLoginWanted);
  } else if (status >= kFirstError) {
    Fail(url, status);
  } else {
    profile_.Logins().NoteArrival(url);
    if (!watch_.State().busy) {
      Q_EMIT completed();
    }
  }
}

void FrameLoads::LoadedErrorPage(const QUrl& url) {
  constexpr int kBlockedByUs = -20;  // and reported as such
  const int error = RouterGate::Instance().NetError(url, NetErrorNamed(std::exchange(error_, {})));
  if (error == kBlockedByUs) {
    return;
  }
  if (watch_.IsLoading()) {
    Q_EMIT missing(url);
  }
  Fail(url, StatusOfNetError(error));
}

void FrameLoads::Fail(const QUrl& url, int status) {
  if (!watch_.IsLoading()) {
    Q_EMIT failed(url, status);
  } else if (!failure_) {
    failure_ = {url, status};
  }
}

}  // namespace quayline
