// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonValue>
#include <QString>

namespace quayline {

// One question to the page agent, the script that Quayline keeps in every page. The page cannot
// change while it is answered.
struct PageCall {
  QString operation;  // the agent's name of the operation, for example "SetElementValue"
  QJsonArray arguments;
  int frame = 0;  // 0: the top document, n: document of item n of its frames
  // What the operation comes to when there is no page to ask.
  QJsonValue if_gone = QStringLiteral("failed");

  bool operator==(const PageCall&) const = default;
};

// The agent's answer. Silence (the page is gone, the renderer died or hangs) is an answer, too.
struct PageAnswer {
  bool answered = false;
  QJsonValue value;
  // Of the document asked, behind the call: see page_operation::ReadMarkupState().
  QString markup_state;
  // The page has work in hand: such as it put off behind an act, or, where what the act was for is
  // not there, before it.
  bool is_working = false;
};

}  // namespace quayline
