// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace quayline {

struct ForeignScript;

// A login that the user typed when the router asked for one; nothing: the question was refused.
struct TypedLogin {
  QString username;
  QString password;
};

// A certificate that only the user can confirm.
struct ShownCertificate {
  QString address;          // host, ":" and port
  QString fingerprint;      // SHA-256, as people compare it
  bool is_changed = false;  // the user trusted another one for this address before
};

// An address that the router's own page or redirect leads to, and that is not the router's address.
struct OtherAddress {
  QString target;  // scheme, "://", host, ":" and port
  QString router;  // the same, of the router
};

// A dialog that a page's script opens. The script is blocked until it is answered.
struct PageDialog {
  enum class Kind { kAlert, kConfirm, kPrompt };

  Kind kind = Kind::kAlert;
  QString text;
  QString preset = {};       // of a prompt
  bool is_repeated = false;  // the page has opened another one since its load
};

struct PageDialogAnswer {
  bool accepted = false;
  QString typed = {};          // into a prompt
  bool wants_no_more = false;  // suppress further dialogs of this page
};

// Answers what a page asks of its user. Each host has exactly one answerer, which is given to it
// when it is made and outlives it.
//
// A callback is called once, at any time, from inside the call too; the page waits until then.
class PageQuestions {
 public:
  PageQuestions() = default;
  PageQuestions(const PageQuestions&) = delete;
  PageQuestions& operator=(const PageQuestions&) = delete;
  virtual ~PageQuestions() = default;

  // The script that is about to run is somebody else's, and has not been allowed yet. Asked before
  // any page is opened.
  virtual void AskForeignScript(const ForeignScript& script,
                                std::function<void(bool allowed)> answer) = 0;
  // The router shows a certificate that the system does not trust, and the user has not trusted
  // yet.
  virtual void AskCertificate(const ShownCertificate& shown,
                              std::function<void(bool trusted)> answer) = 0;
  // The router at `address` asks for a login, and there is no login, or it was refused.
  virtual void AskLogin(const QString& address,
                        std::function<void(std::optional<TypedLogin>)> answer) = 0;
  // Asked once for each address in a job: the caller remembers the answer.
  virtual void AskOtherAddress(const OtherAddress& other,
                               std::function<void(bool allowed)> answer) = 0;
  // The engine asks this one inside the page's script, so it is answered before it returns.
  // Nothing: the user was not asked, and the page gets OK, or the text that it proposed.
  virtual std::optional<PageDialogAnswer> AnswerDialog(const PageDialog& dialog) = 0;
};

}  // namespace quayline
