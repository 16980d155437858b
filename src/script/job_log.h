// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>

namespace quayline {

// The text of a window's log box. It adds nothing of its own: each line break (CR LF) comes from
// the caller.
class JobLog final : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  void Append(const QString& text) {
    text_ += text;
    Q_EMIT appended(text);
  }
  void Clear() { text_.clear(); }
  const QString& Text() const { return text_; }

 Q_SIGNALS:
  void appended(const QString& text);

 private:
  QString text_;
};

inline QString LineBreak() { return QStringLiteral("\r\n"); }
// The line that separates the parts of a log.
inline QString LogSeparator() { return QString(71, QLatin1Char('-')); }

}  // namespace quayline
