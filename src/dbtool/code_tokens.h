// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>

namespace quayline::dbtool {

// A word, a string literal, or one other character of C++ code.
struct CodeToken {
  enum class Kind { kWord, kLiteral, kMark };

  Kind kind = Kind::kMark;
  QString text;  // of a literal: its value

  bool Is(char16_t mark) const { return kind == Kind::kMark && text == QChar(mark); }
  bool IsWord(QLatin1String word) const { return kind == Kind::kWord && text == word; }
};

// Without comments, preprocessor lines and character literals. Literals that follow each other are
// one.
QList<CodeToken> ReadCodeTokens(const QString& code);

}  // namespace quayline::dbtool
