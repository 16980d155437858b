// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPalette>
#include <QSyntaxHighlighter>

namespace quayline {

// Sets the commands of a script apart from its comments, and underlines what the lint finds. Each
// line is checked by itself, so a key stroke checks one line.
class ScriptHighlighter final : public QSyntaxHighlighter {
  Q_OBJECT

 public:
  ScriptHighlighter(QTextDocument* document, const QPalette& palette);

  void SetPalette(const QPalette& palette);

 protected:
  void highlightBlock(const QString& line) override;

 private:
  void Underline(int start, int length, const QColor& color);

  QPalette palette_;
};

}  // namespace quayline
