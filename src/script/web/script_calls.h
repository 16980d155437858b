// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QPointer>
#include <QString>
#include <QVariant>
#include <QWebEnginePage>

#include <functional>
#include <map>
#include <memory>

class QJsonArray;

namespace quayline {

// Values as the text of a JavaScript array.
QString AsJavaScript(const QJsonArray& values);

// Runs code in the script worlds of one page, in order, and sees to it that each call is answered
// once: with an invalid value when the page's process ends first. After its own end no answer
// comes.
class ScriptCalls final {
 public:
  using Answer = std::function<void(const QVariant&)>;

  ScriptCalls() = default;
  ~ScriptCalls();
  ScriptCalls(const ScriptCalls&) = delete;
  ScriptCalls& operator=(const ScriptCalls&) = delete;

  // Without a page every call is answered at once.
  void SetPage(QWebEnginePage* page) { page_ = page; }

  void Run(const QString& code, quint32 world, Answer done);
  // Keeps calls back until Release().
  void Hold() { is_holding_ = true; }
  void Release();
  // The engine itself would keep the open calls of a process that has ended until the page is
  // deleted. Ends the connection to the page.
  void AnswerAll();
  // No answer comes any more.
  void Drop() { *alive_ = false; }
  bool HasOpenCalls() const { return !open_.empty(); }

 private:
  struct HeldCall {
    quint64 number;
    QString code;
    quint32 world;
  };

  void Send(const HeldCall& call);

  QPointer<QWebEnginePage> page_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  quint64 last_number_ = 0;
  std::map<quint64, Answer> open_;  // by number, which is the order of the calls
  QList<HeldCall> held_;
  bool is_holding_ = false;
};

}  // namespace quayline
