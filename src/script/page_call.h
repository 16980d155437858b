// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <optional>

namespace quayline {

// What a call does to the page, and so what the page may do in reply.
enum class PageCallKind {
  kQuestion,  // changes nothing that a page reacts to
  kInput,     // writes into a box or gives it the focus
  kChoice,    // chooses an item of the page: many pages load another form then
  kClick,     // clicks or submits
};

// One call of the page agent, the script that Quayline keeps in every page. The page cannot change
// while it is answered. Made by the functions of page_operations.h.
struct PageCall {
  QString operation;  // the agent's name of the operation, for example "SetElementValue"
  PageCallKind kind = PageCallKind::kQuestion;
  QJsonArray arguments;
  int frame = 0;  // 0: the top document, n: document of item n of its frames
  // The result when there is no page to ask.
  QJsonValue if_gone = QStringLiteral("failed");

  // Whether the page may react with work of its own.
  bool IsUserAction() const { return kind != PageCallKind::kQuestion; }

  bool operator==(const PageCall&) const = default;
};

// The agent's answer. Silence (the page is gone, the renderer died or hangs) is an answer, too.
struct PageAnswer {
  bool answered = false;
  QJsonValue value;
  // Of the document asked, after the call: see page_operation::ReadMarkupState().
  QString markup_state;
  // The error texts of the page, as page_operation::ReadComplaints() gives them; nothing where they
  // were reported before, with the same state.
  std::optional<QStringList> complaints;
  // The page has pending work: started by the action, or, if the target was not found, any pending
  // work.
  bool is_working = false;
};

}  // namespace quayline
