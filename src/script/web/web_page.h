// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWebEngineCertificateError>
#include <QWebEnginePage>

#include "script/page_host.h"
#include "script/web/navigation_watch.h"
#include "script/web/web_profile.h"

namespace quayline {

// Whether a page can have an address of this scheme. Others would open another program.
bool IsPageScheme(const QString& scheme);

// The one place where the engine calls back: every question that a page raises is answered here, by
// a rule or by the PageQuestions, and announced to the host as a signal.
class WebPage final : public QWebEnginePage {
  Q_OBJECT

 public:
  WebPage(WebProfile& profile, PageQuestions& questions, QObject* parent);

  // The user sees a dialog of the page. Its answer returns into the engine, so that the page must
  // not be deleted before dialogAnswered().
  bool IsAsking() const { return dialogs_open_ > 0; }

  // Whether one frame is loaded, and nothing else of the page.
  void SetLonelyFrame(bool is_lonely) { is_lonely_frame_ = is_lonely; }

 Q_SIGNALS:
  // A message of one of our scripts; without the beacon.
  void agentSaid(const QString& text);
  void frameNavigating(const QUrl& url, quayline::FrameRequest kind);
  void told(const QString& text);
  // A message of the page that was answered without the user; with silent mode off.
  void messageShown(const QString& text);
  void dialogAnswered();
  // The router's login question for `url` was not answered.
  void loginRefused(const QUrl& url);
  // The router asked for a login.
  void loginAsked();
  // The login may be right, and is not given now because other requests are queued.
  void loginPostponed(const QUrl& url);
  void scriptFailed(const QString& description, const QString& url, int line);
  // The page has more windows open than it may.
  void popupsExceeded();
  // A page asks for a new window; to be answered with the page that becomes it.
  void popupWanted(QWebEnginePage** popup);

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool is_main_frame) override;
  QWebEnginePage* createWindow(WebWindowType type) override;
  void javaScriptAlert(const QUrl& origin, const QString& text) override;
  bool javaScriptConfirm(const QUrl& origin, const QString& text) override;
  bool javaScriptPrompt(const QUrl& origin, const QString& text, const QString& preset,
                        QString* result) override;
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                int line, const QString& source) override;
  QStringList chooseFiles(FileSelectionMode mode, const QStringList& old_files,
                          const QStringList& mime_types) override;

 private:
  void AnswerLogin(const QUrl& url, QAuthenticator* authenticator);
  void JudgeCertificate(QWebEngineCertificateError error);
  PageDialogAnswer AnswerDialog(PageDialog dialog);
  // Reports how a dialog was answered, and shows it if the user has not seen it and wants to.
  void ReportDialog(const PageDialog& dialog, const PageDialogAnswer& answer, bool is_seen);

  WebProfile& profile_;
  PageQuestions& questions_;
  bool is_lonely_frame_ = false;
  // Of the page, since its last load began.
  bool has_exceeded_popups_ = false;
  int messages_ = 0;
  bool is_muted_ = false;
  int dialogs_open_ = 0;
};

}  // namespace quayline
