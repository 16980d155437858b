// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QUrl>

#include <memory>

namespace quayline {

class WebPage;

// Tries the login with a single request, in a page that is not shown.
class LoginProbe final : public QObject {
  Q_OBJECT

 public:
  LoginProbe(std::unique_ptr<WebPage> page, const QUrl& url);
  ~LoginProbe() override;

 Q_SIGNALS:
  // `is_answered` is false when nothing but a connection error came.
  void over(bool is_answered);

 private:
  std::unique_ptr<WebPage> page_;
};

}  // namespace quayline
