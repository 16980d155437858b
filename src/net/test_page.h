// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <functional>

namespace quayline {

// The browser in which the test site's pages are shown.
class TestPage : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  // Loads a page, ending a load that is under way. completed() or failed() follows, or nothing
  // while the site keeps the page open.
  virtual void Open(const QUrl& url) = 0;
  // Fills in a field, presses a button. Answers whether the page has it; pressed, the form is sent
  // and completed() or failed() follows.
  virtual void Fill(const QString& field, const QString& value,
                    std::function<void(bool found)> done) = 0;
  virtual void Press(const QString& button, std::function<void(bool found)> done) = 0;

 Q_SIGNALS:
  void completed();
  void failed();
};

}  // namespace quayline
