// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/network/hosted_test_page.h"

#include <utility>

#include "script/page_operations.h"
#include "script/status_text.h"

namespace quayline {

namespace {

constexpr int kHttpPort = 80;
constexpr int kHttpsPort = 443;

}  // namespace

HostedTestPage::HostedTestPage(const PageHostFactory& make_host, QObject* parent)
    : TestPage(parent), host_(make_host(*this, this)) {
  connect(host_, &PageHost::newWindow, host_, [](PageHost* popup) { popup->deleteLater(); });
  connect(host_, &PageHost::statusTextChanged, this, &HostedTestPage::statusChanged);
  connect(host_, &PageHost::navigateError, this, [this](const QString& url, int status) {
    if (wanted_.isValid()) {
      return;  // it is of the load that Open() ended
    }
    has_failed_ = true;
    Q_EMIT pageFailed(url, StatusText(status));
    Q_EMIT failed();
  });
  connect(host_, &PageHost::documentComplete, this, [this] {
    if (wanted_.isValid()) {
      return;
    }
    if (!has_failed_) {
      Q_EMIT completed();
    }
    has_failed_ = false;
  });
  // What the former load still reports comes in the same turn as its end.
  connect(host_, &PageHost::navigationChanged, this, &HostedTestPage::BeginWhenFree,
          Qt::QueuedConnection);
}

// The host asks its questions of this object.
HostedTestPage::~HostedTestPage() { delete host_; }

void HostedTestPage::Open(const QUrl& url) {
  wanted_ = url;
  host_->StopNavigation();
  QMetaObject::invokeMethod(this, &HostedTestPage::BeginWhenFree, Qt::QueuedConnection);
}

void HostedTestPage::BeginWhenFree() {
  if (!wanted_.isValid() || host_->Navigation().busy) {
    return;
  }
  const QUrl url = std::exchange(wanted_, {});
  has_failed_ = false;
  const bool is_secure = url.scheme() == QLatin1String("https");
  host_->SetLogin({.scheme = url.scheme(),
                   .host = url.host(),
                   .port = url.port(is_secure ? kHttpsPort : kHttpPort),
                   .username = {},
                   .password = {}});
  host_->Navigate2(url.toString(), {});
}

void HostedTestPage::Fill(const QString& field, const QString& value,
                          std::function<void(bool found)> done) {
  AskPage(page_operation::SetElementValue(field, value), std::move(done));
}

void HostedTestPage::Press(const QString& button, std::function<void(bool found)> done) {
  has_failed_ = false;
  AskPage(page_operation::ClickButton(button), std::move(done));
}

void HostedTestPage::AskPage(const PageCall& call, std::function<void(bool found)> done) {
  host_->Call(call, [done = std::move(done)](const PageAnswer& answer) {
    done(answer.answered && answer.value.toString() == QLatin1String(page_result::kSuccessful));
  });
}

void HostedTestPage::AskForeignScript(const ForeignScript&,
                                      std::function<void(bool allowed)> answer) {
  answer(false);
}

void HostedTestPage::AskCertificate(const ShownCertificate&,
                                    std::function<void(bool trusted)> answer) {
  answer(false);
}

void HostedTestPage::AskLogin(const QString&,
                              std::function<void(std::optional<TypedLogin>)> answer) {
  answer(std::nullopt);
}

void HostedTestPage::AskOtherAddress(const OtherAddress&,
                                     std::function<void(bool allowed)> answer) {
  answer(false);
}

std::optional<PageDialogAnswer> HostedTestPage::AnswerDialog(const PageDialog&) {
  return std::nullopt;
}

}  // namespace quayline
