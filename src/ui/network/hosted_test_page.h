// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "core/router_session.h"
#include "net/test_page.h"
#include "script/page_host.h"
#include "script/page_questions.h"

namespace quayline {

// The test site's page in a hosted browser. The site is asked for pages and nothing else: what its
// pages ask for (windows, logins, other addresses, unknown certificates) is refused.
class HostedTestPage final : public TestPage, private PageQuestions {
  Q_OBJECT

 public:
  explicit HostedTestPage(const PageHostFactory& make_host, QObject* parent = nullptr);
  ~HostedTestPage() override;

  // The view that shows the page.
  QWidget* Widget() const { return host_->Widget(); }

  // The browser then reaches the site of this page and no other.
  void Open(const QUrl& url) override;
  void Fill(const QString& field, const QString& value,
            std::function<void(bool found)> done) override;
  void Press(const QString& button, std::function<void(bool found)> done) override;

 Q_SIGNALS:
  void statusChanged(const QString& text);
  // A page failed: its address and the name of its status.
  void pageFailed(const QString& url, const QString& status);

 private:
  void BeginWhenFree();
  void AskPage(const PageCall& call, std::function<void(bool found)> done);
  void AskForeignScript(const ForeignScript& script,
                        std::function<void(bool allowed)> answer) override;
  void AskCertificate(const ShownCertificate& shown,
                      std::function<void(bool trusted)> answer) override;
  void AskLogin(const QString& address,
                std::function<void(std::optional<TypedLogin>)> answer) override;
  void AskOtherAddress(const OtherAddress& other,
                       std::function<void(bool allowed)> answer) override;
  std::optional<PageDialogAnswer> AnswerDialog(const PageDialog& dialog) override;

  PageHost* host_;
  QUrl wanted_;              // is loaded when the load before it has ended
  bool has_failed_ = false;  // since the load began
};

}  // namespace quayline
